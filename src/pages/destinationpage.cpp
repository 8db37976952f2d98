#include "pages/destinationpage.h"

#include "files/installpath.h"
#include "pages/fittedlabel.h"
#include "pages/pagelabels.h"
#include "pages/setupchoices.h"
#include "system/dialogsettings.h"
#include "system/installation.h"
#include "system/probes.h"
#include "theme/fonts.h"
#include "theme/stylesheets.h"
#include "theme/themed.h"
#include "widgets/themedbutton.h"

#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kPathHeight = 34;
constexpr int kButtonHeight = 30;
constexpr double kCaptionSpacing = 110.0; // percent

} // namespace

DestinationPage::DestinationPage(QWidget *parent) : WizardPage(parent)
{
    QVBoxLayout *layout = pageLayout(this);
    addPageHead(layout, tr("Select Destination Location"),
                tr("Setup will install Varnel Schematics into the following folder."));
    layout->addSpacing(20);

    QLabel *caption = pageCaptionLabel(tr("INSTALL TO"), this);
    QFont captionFont = caption->font();
    captionFont.setPixelSize(10);
    captionFont.setLetterSpacing(QFont::PercentageSpacing, kCaptionSpacing);
    caption->setFont(captionFont);
    layout->addWidget(caption);
    layout->addSpacing(8);

    m_pathLabel = new FittedLabel(shortenMiddle, this);
    m_pathLabel->setFont(monospacedFont(11));
    // However long the path is, what stands beside it stays where it is.
    m_pathLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    m_pathLabel->setAccessibleDescription(caption->text());
    m_pathLabel->setFixedHeight(kPathHeight);
    setThemedStyleSheet(m_pathLabel, panelStyle(u"0 11px"_s, u"@INS_TX"_s));

    auto *change = new ThemedButton(tr("Change"), kFrameRadius, this);
    change->setFixedHeight(kButtonHeight);
    setThemedStyleSheet(change, ghostButtonStyle());
    connect(change, &QPushButton::clicked, this, &DestinationPage::chooseFolder);

    auto *row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(m_pathLabel, 1);
    row->addWidget(change);
    layout->addLayout(row);
    layout->addSpacing(7);
    m_diskSpace = pageCaptionLabel({}, this);
    layout->addWidget(m_diskSpace);
    layout->addStretch();

    setPath(defaultInstallDir());
    refreshDiskSpace();
}

void DestinationPage::setPath(const QString &path)
{
    m_path = QDir::toNativeSeparators(path);
    m_pathLabel->setText(m_path);
    // A disk that sleeps or lies in the network may take seconds to answer.
    if (isVisible())
        refreshDiskSpace();
    else
        m_diskSpace->clear();
}

void DestinationPage::prepare(SetupChoices &choices)
{
    setPath(choices.folder);
}

void DestinationPage::leave(SetupChoices &choices)
{
    choices.folder = m_path;
}

void DestinationPage::showEvent(QShowEvent *)
{
    // Others write to the disk too: the figure is that of the moment in which it is seen.
    refreshDiskSpace();
}

void DestinationPage::refreshDiskSpace()
{
    m_diskSpace->setText(checkDiskSpace(m_path).value);
}

void DestinationPage::chooseFolder()
{
    QString chosen;
    withoutDialogSettings([&] {
        chosen = QFileDialog::getExistingDirectory(this, tr("Select install location"), m_path,
                                                   QFileDialog::ShowDirsOnly);
    });
    if (chosen.isEmpty())
        return;
    // A folder that the user picks is taken literally; only a bare drive gets the product's folder.
    setPath(QDir(installFolder(chosen)).absolutePath());
}
