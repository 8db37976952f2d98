#include "pages/systemcheckpage.h"

#include "pages/checkrow.h"
#include "pages/pagelabels.h"
#include "pages/setupchoices.h"
#include "system/probes.h"
#include "widgets/animation.h"
#include "widgets/spokentext.h"

#include <chrono>
#include <utility>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kFirstRowDelay = 120ms;
constexpr auto kFirstWarningDelay = 160ms;
constexpr auto kRowStagger = 110ms;
constexpr int kWarningDuration = 400; // ms

} // namespace

SystemCheckPage::SystemCheckPage(QWidget *parent)
    : WizardPage(parent), m_title(tr("Checking your system")), m_warningDelay(this)
{
    QVBoxLayout *layout = pageLayout(this);
    addPageHead(layout, m_title, tr("Verifying the requirements so you don't have to read them."));
    layout->addSpacing(12);
    m_rowContainer = new QWidget(this);
    m_rowLayout = new QVBoxLayout(m_rowContainer);
    m_rowLayout->setContentsMargins({});
    m_rowLayout->setSpacing(0);
    layout->addWidget(m_rowContainer);
    layout->addSpacing(4);

    m_warning =
        pageCallout(tr("Smart App Control will block Varnel Schematics from starting. Turn it "
                       "off in Windows Security › App & Browser Control, then restart."),
                    u"font-size:11.5px;color:@INS_TX2;border-left:2px solid @INS_WARN;"
                    "padding-left:11px;"_s,
                    this);
    m_warningOpacity = new QGraphicsOpacityEffect(m_warning);
    m_warning->setGraphicsEffect(m_warningOpacity);
    connect(m_warningOpacity, &QGraphicsOpacityEffect::opacityChanged, this,
            &SystemCheckPage::followWarningOpacity);
    m_warningOpacity->setOpacity(0.0);
    layout->addWidget(m_warning);
    layout->addStretch();

    m_warningAnimation.setTargetObject(m_warningOpacity);
    m_warningAnimation.setPropertyName("opacity");
    m_warningAnimation.setDuration(kWarningDuration);
    connect(&m_warningDelay, &DelayedStart::due, this,
            [this] { glideTo(m_warningAnimation, 1.0); });
}

void SystemCheckPage::prepare(SetupChoices &choices)
{
    runChecks(choices.folder);
}

void SystemCheckPage::start()
{
    startReveal();
}

void SystemCheckPage::leave(SetupChoices &)
{
    resetReveal();
}

void SystemCheckPage::runChecks(const QString &destinationPath)
{
    resetReveal();
    m_smartAppControlRow = nullptr;
    for (CheckRow *row : std::as_const(m_rows)) {
        // Deleted later, because this may be called from an event of the row.
        m_rowLayout->removeWidget(row);
        row->hide();
        row->deleteLater();
    }
    m_rows.clear();

    for (const CheckResult &result : runSystemChecks(destinationPath)) {
        auto *row = new CheckRow(result, m_rowContainer);
        m_rowLayout->addWidget(row);
        row->show();
        m_rows.append(row);
        if (result.label == kSmartAppControlLabel)
            m_smartAppControlRow = row;
    }
    m_warningNeeded = isSmartAppControlOn();
}

void SystemCheckPage::startReveal()
{
    for (qsizetype i = 0; i < m_rows.size(); ++i)
        m_rows[i]->revealAfter(kFirstRowDelay + kRowStagger * int(i));
    if (m_warningNeeded)
        m_warningDelay.start(kFirstWarningDelay + kRowStagger * int(m_rows.size()));
}

void SystemCheckPage::resetReveal()
{
    for (CheckRow *row : std::as_const(m_rows))
        row->resetReveal();
    hideWarning();
}

void SystemCheckPage::hideWarning()
{
    m_warningDelay.stop();
    m_warningAnimation.stop();
    m_warningOpacity->setOpacity(0.0);
}

void SystemCheckPage::setSmartAppControlOn(bool on)
{
    m_warningNeeded = on;
    if (!on)
        hideWarning();
    if (m_smartAppControlRow)
        m_smartAppControlRow->setResult(judgeSmartAppControl(on ? kSmartAppControlOn : 0));
}

QString SystemCheckPage::spokenSummary() const
{
    QStringList shortcomings;
    for (const CheckRow *row : m_rows) {
        if (!row->result().ok)
            shortcomings += row->accessibleName();
    }
    if (m_warningNeeded)
        shortcomings += m_warning->text();
    // Requirements that are met are counted, not listed.
    return spokenText({ m_title, tr("Requirements checked: %1").arg(checkCount()),
                        shortcomings.isEmpty() ? tr("All are met") : tr("Need attention:"),
                        shortcomings.join(u'\n') });
}

void SystemCheckPage::followWarningOpacity(double opacity)
{
    // A screen reader would read a label that is only transparent.
    m_warning->setVisible(opacity > 0.0);
    // Disabled where it changes nothing: the page has an effect of its own while it comes and goes,
    // and Qt cannot nest them.
    m_warningOpacity->setEnabled(opacity < 1.0);
}
