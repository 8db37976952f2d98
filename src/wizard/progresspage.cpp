#include "wizard/progresspage.h"

#include "pages/fittedlabel.h"
#include "pages/pagelabels.h"
#include "pages/setupchoices.h"
#include "theme/fonts.h"
#include "theme/themed.h"
#include "widgets/progresstrack.h"
#include "widgets/spokentext.h"
#include "wizard/runplan.h"
#include "wizard/steplist.h"

#include <QHBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kBadgeGap = 14;

/// Keeps a long file name from running into the percentage.
constexpr int kFigureGap = 12;

/// Room for a file name of five lines, which are more characters than a name usually may have, or
/// for an error of nine. Longer texts are shortened, so that the page keeps its layout.
constexpr int kHighestFile = 70;
constexpr int kHighestCaption = 135;

} // namespace

ProgressPage::ProgressPage(const Texts &texts, QWidget *badge, QWidget *parent)
    : WizardPage(parent), m_texts(texts)
{
    QVBoxLayout *layout = pageLayout(this);
    if (badge) {
        auto *head = new QHBoxLayout;
        head->setSpacing(kBadgeGap);
        layout->addLayout(head);
        badge->setParent(this);
        badge->setFixedSize(badge->sizeHint());
        head->addWidget(badge, 0, Qt::AlignTop);
        auto *column = new QVBoxLayout;
        column->setSpacing(0);
        head->addLayout(column, 1);
        column->setAlignment(Qt::AlignTop);
        addPageHead(column, texts.title, texts.body);
    } else {
        addPageHead(layout, texts.title, texts.body);
    }
    layout->addSpacing(14);
    m_steps = new StepList(this);
    layout->addWidget(m_steps);
    layout->addStretch();

    m_fileLabel = new FittedLabel(shortenMiddle, this);
    m_fileLabel->setObjectName("file"_L1);
    m_fileLabel->setFont(monospacedFont(10));
    m_fileLabel->setWrapAnywhere(true);
    m_fileLabel->setMaximumHeight(kHighestFile);
    m_fileLabel->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    setThemedStyleSheet(m_fileLabel, u"color:@INS_TX3;"_s);
    m_percentLabel = new QLabel(this);
    m_percentLabel->setObjectName("percentage"_L1);
    m_percentLabel->setFont(displayFont(17, QFont::DemiBold));
    setThemedStyleSheet(m_percentLabel, u"color:@INS_TX;"_s);
    auto *row = new QHBoxLayout;
    row->setSpacing(kFigureGap);
    row->addWidget(m_fileLabel, 1);
    row->addWidget(m_percentLabel, 0, Qt::AlignBottom);
    layout->addLayout(row);

    layout->addSpacing(8);
    m_track = new ProgressTrack(this);
    m_track->setFixedHeight(m_track->sizeHint().height());
    m_track->setAccessibleName(texts.title);
    layout->addWidget(m_track);

    layout->addSpacing(8);
    m_captionLabel = new FittedLabel(shortenMessage, this);
    m_captionLabel->setObjectName("caption"_L1);
    QFont captionFont = font();
    captionFont.setPixelSize(11);
    m_captionLabel->setFont(captionFont);
    m_captionLabel->setText(texts.caption);
    m_captionLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    onThemeChange(this, [this] { styleCaption(); });
    layout->addWidget(m_captionLabel);
}

void ProgressPage::prepare(SetupChoices &choices)
{
    begin(runSteps(choices.mode, choices.removesPreferences));
}

void ProgressPage::begin(const QStringList &steps)
{
    m_hasError = false;
    styleCaption();
    m_steps->setSteps(steps);
    m_fileLabel->clear();
    m_percentLabel->setText(u"0%"_s);
    resetBar();
    setStatus(m_texts.caption);
}

void ProgressPage::leave(SetupChoices &)
{
    resetBar();
}

void ProgressPage::setWaiting(bool waiting)
{
    m_track->setIndeterminate(waiting);
}

void ProgressPage::setProgress(double fraction)
{
    setWaiting(false);
    m_track->setTarget(fraction);
    m_percentLabel->setText(u"%1%"_s.arg(qRound(100.0 * fraction)));
    m_steps->setProgress(fraction);
}

void ProgressPage::setCurrentFile(const QString &path)
{
    m_fileLabel->setText(path);
}

void ProgressPage::setStatus(const QString &status)
{
    m_captionLabel->setText(status);
}

void ProgressPage::completeSteps()
{
    m_steps->complete();
}

void ProgressPage::showError(const QString &message)
{
    setWaiting(false);
    m_hasError = true;
    styleCaption();
    // The lines that the file's name has beyond its first are taken from the message.
    const int fileHeight =
        qMin(m_fileLabel->heightForWidth(m_fileLabel->width()), m_fileLabel->maximumHeight());
    const int fileGrowth = qMax(0, fileHeight - m_percentLabel->sizeHint().height());
    m_captionLabel->setMaximumHeight(kHighestCaption - fileGrowth);
    setStatus(message);
}

void ProgressPage::settle()
{
    m_track->settle();
    layout()->activate(); // the percentage may just have become wider
    repaint();
}

void ProgressPage::resetBar()
{
    setWaiting(false);
    m_track->reset();
}

QString ProgressPage::currentStep() const
{
    return m_steps->currentStep();
}

QString ProgressPage::spokenSummary() const
{
    return m_hasError ? m_captionLabel->text() : spokenText({ m_texts.title, m_texts.body });
}

void ProgressPage::styleCaption()
{
    m_captionLabel->setWordWrap(m_hasError);
    // The lines of an error begin below the bar, whatever is left free below them.
    m_captionLabel->setAlignment(Qt::AlignLeft | (m_hasError ? Qt::AlignTop : Qt::AlignVCenter));
    // An error can be selected, so that users can copy it into a request for help.
    m_captionLabel->setTextInteractionFlags(m_hasError ? Qt::TextSelectableByMouse
                                                       : Qt::NoTextInteraction);
    m_captionLabel->setStyleSheet(themed(m_hasError ? u"color:@INS_RED;"_s : u"color:@INS_TX3;"_s));
}
