// In a minimised or hidden window, and where the user wants no motion, nothing moves and everything
// is at once where its animation would have ended.

#include "pages/checkrow.h"
#include "widgets/animatedmark.h"
#include "widgets/confettioverlay.h"
#include "widgets/progresstrack.h"
#include "widgets/sealcheck.h"
#include "wizard/installerpane.h"
#include "wizard/wizardtest.h"

#include <QGraphicsEffect>
#include <QTimer>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A window, and a look at what in it is timed.
struct Still : WizardDriver
{
    Still() : WizardDriver(QString()) { qApp->installEventFilter(&m_ticks); }

    /// Intervals of the timers that run in the window, but for engine, simulation and
    /// notifications: those who see nothing may hear it.
    [[nodiscard]] QList<int> timers() const
    {
        QList<int> running;
        for (const QTimer *timer : wizard.findChildren<QTimer *>()) {
            if (timer->isActive() && !qobject_cast<Announcer *>(timer->parent()))
                running << timer->interval();
        }
        return running;
    }
    /// Whether no timer runs in the window now, and the clock of all animations stops, which takes
    /// it some more ticks. What they have come to is to be looked at before.
    [[nodiscard]] bool rests()
    {
        return timers().isEmpty()
            && QTest::qWaitFor(
                   [this] {
                       m_ticks.count = 0;
                       QTest::qWait(100);
                       return m_ticks.count == 0;
                   },
                   kPatience);
    }
    void minimise()
    {
        wizard.showMinimized();
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();
    }
    /// Whether all parts of the mark have come in.
    [[nodiscard]] bool hasEntered() const
    {
        return mark->a1Progress() == 1.0 && mark->a2Progress() == 1.0 && mark->a3Progress() == 1.0
            && mark->a4Progress() == 1.0;
    }
    /// Whether the page is in its place and no part of it is still to come.
    [[nodiscard]] bool pageIsThere() const
    {
        const auto rows = currentPage()->findChildren<RevealRow *>();
        return !currentPage()->graphicsEffect() && currentPage()->geometry() == pane->rect()
            && std::all_of(rows.begin(), rows.end(), [](const RevealRow *row) {
                   return row->reveal() == (row->isRevealed() ? 1.0 : 0.0);
               });
    }
    [[nodiscard]] bool sealIsDrawn() const
    {
        const auto *seal = currentPage()->findChild<SealCheck *>();
        return seal && seal->circleProgress() == 1.0 && seal->checkProgress() == 1.0;
    }

private:
    class Ticks : public QObject
    {
    public:
        int count = 0;

    protected:
        bool eventFilter(QObject *watched, QEvent *event) override
        {
            if (event->type() == QEvent::Timer && watched->inherits("QAnimationDriver"))
                ++count;
            return false;
        }
    };
    Ticks m_ticks;
};

} // namespace

class TestInstallerWizardStillness : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void entranceEnds_data();
    void entranceEnds();
    void pagesAreThereWhenMinimised();
    void runGoesOnOutOfSight();
    void confettiWaitsForTheWindowToBeSeen();
    void reducedMotion();
};

void TestInstallerWizardStillness::entranceEnds_data()
{
    QTest::addColumn<bool>("isHidden");
    QTest::newRow("minimised, with the last part still to come") << false;
    QTest::newRow("hidden, with the first part on its way") << true;
}

void TestInstallerWizardStillness::entranceEnds()
{
    QFETCH(bool, isHidden);
    Still driver;
    driver.show(RunMode::Install);
    QVERIFY(driver.timers().contains(620)); // the last part still waits
    if (isHidden) {
        QTRY_VERIFY_WITH_TIMEOUT(driver.timers().size() < 4, kPatience);
        driver.wizard.hide();
    } else {
        driver.minimise();
    }
    QVERIFY(driver.hasEntered());
    QVERIFY(driver.rests());
    driver.mark->replay();
    QVERIFY(driver.hasEntered());
    QVERIFY(driver.rests());
    const double before = driver.mark->driftOffset();
    driver.wizard.showNormal();
    QTRY_VERIFY_WITH_TIMEOUT(driver.mark->driftOffset() != before, kPatience); // it floats on
}

void TestInstallerWizardStillness::pagesAreThereWhenMinimised()
{
    Still driver;
    driver.show(RunMode::Install);
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(driver.currentPage()->graphicsEffect()); // it is coming in
    driver.minimise();
    QVERIFY(driver.shows("LicensePage"));
    QVERIFY(driver.pageIsThere());
    driver.wizard.showNormal();
    QVERIFY(driver.click(kAccept) && driver.press(u"Next"_s));
    const auto findings = driver.currentPage()->findChildren<RevealRow *>();
    QVERIFY(std::any_of(findings.begin(), findings.end(),
                        [](const RevealRow *row) { return !row->isRevealed(); }));
    driver.minimise();
    QVERIFY(driver.pageIsThere());
    for (const RevealRow *row : findings)
        QCOMPARE(row->reveal(), 1.0);
    driver.button(u"Back"_s)->click();
    QVERIFY(driver.pageIsThere());
    QVERIFY(driver.rests());
}

void TestInstallerWizardStillness::runGoesOnOutOfSight()
{
    Still driver;
    QVERIFY(driver.startRun(RunMode::Install));
    driver.minimise();
    const ProgressParts shown = driver.progress();
    QTRY_VERIFY_WITH_TIMEOUT(shown.track->target() > 0.1, kPatience);
    QCOMPARE(shown.track->value(), shown.track->target());
    QCOMPARE(driver.mark->fill(), shown.track->target());
    QVERIFY(shown.shownSteps() > 0);
    QVERIFY(driver.pageIsThere());
    QVERIFY(driver.rests());
}

// The user sees it on coming back after a long run.
void TestInstallerWizardStillness::confettiWaitsForTheWindowToBeSeen()
{
    Still driver;
    QVERIFY(driver.startRun(RunMode::Update));
    driver.minimise();
    QVERIFY(driver.finishSimulation());
    auto *confetti = driver.find<ConfettiOverlay>();
    QTRY_VERIFY_WITH_TIMEOUT(!confetti->isHidden(), kPatience);
    QVERIFY(driver.hasEntered());
    QVERIFY(driver.sealIsDrawn());
    QVERIFY(driver.rests());
    // It flies when it is seen, and stays in the air when the window goes once more.
    const auto *timer = confetti->findChild<QTimer *>();
    driver.wizard.showNormal();
    QTRY_VERIFY_WITH_TIMEOUT(timer->isActive(), kPatience);
    driver.minimise();
    QVERIFY(driver.rests());
    QVERIFY(!confetti->isHidden());
    driver.wizard.showNormal();
    QTRY_VERIFY_WITH_TIMEOUT(confetti->isHidden(), kPatience);
}

void TestInstallerWizardStillness::reducedMotion()
{
    qputenv("VARNEL_REDUCED_MOTION", "1");
    Still driver;
    driver.show(RunMode::Install);
    QVERIFY(driver.hasEntered());
    QVERIFY(driver.rests());
    QVERIFY(driver.press(u"Next"_s) && driver.pageIsThere());
    QVERIFY(driver.click(kAccept));
    QVERIFY(driver.press(u"Next"_s) && driver.pageIsThere());
    // All findings at once and none after another, with the warning in full.
    auto *page = driver.find<SystemCheckPage>();
    page->setSmartAppControlOn(true);
    page->startReveal();
    for (const RevealRow *row : page->findChildren<RevealRow *>())
        QCOMPARE(row->reveal(), 1.0);
    const auto *warning = page->findChild<QLabel *>(u"callout"_s);
    QVERIFY(warning && !warning->isHidden());
    QVERIFY(!warning->graphicsEffect()->isEnabled());
    QVERIFY(driver.rests());

    QVERIFY(driver.startRun(RunMode::Update));
    QTRY_VERIFY_WITH_TIMEOUT(driver.progress().shownSteps() > 0, kPatience);
    QVERIFY(driver.pageIsThere());
    QVERIFY(driver.finishSimulation());
    QVERIFY(driver.comesTo("UpdateFinishedPage"));
    QVERIFY(driver.sealIsDrawn());
    QVERIFY(driver.hasEntered());
    QVERIFY(driver.find<ConfettiOverlay>()->isHidden());
    QVERIFY(driver.rests());
}

QTEST_MAIN(TestInstallerWizardStillness)
#include "tst_installerwizard_stillness.moc"
