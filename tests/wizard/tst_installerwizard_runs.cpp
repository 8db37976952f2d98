// Runs with the engine and as simulations: how they go, how they end, and what can be done after a
// failure. Whole runs of the engine are tests/e2e's matter.

#include "pages/pagetext.h"
#include "widgets/animatedmark.h"
#include "widgets/progresstrack.h"
#include "wizard/keyguard.h"
#include "wizard/wizardtest.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTimer>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kFinishing = u"Finishing up…"_s;
constexpr char kWaiting[] = "stall = forever\nstage = before-status\n";

/// One event of a key, to whatever has the focus, right now.
void sendKey(QEvent::Type type, Qt::Key key, bool isRepeated = false)
{
    QKeyEvent event(type, key, Qt::NoModifier, key == Qt::Key_Space ? u" "_s : QString(),
                    isRepeated);
    QCoreApplication::sendEvent(QApplication::focusWidget(), &event);
}

} // namespace

class TestInstallerWizardRuns : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void success_data() { addModes(); }
    void success();
    void abandonedRunIsIgnored();
    void updateWithoutAFolder();
    void simulation_data() { addModes(); }
    void simulation();
    void simulatesWithoutAnEngine_data() { addModes(); }
    void simulatesWithoutAnEngine();
    void simulationEndsWithItsPage();
    void missingPrograms();
    void failureIsFinal();
    void keysAreIgnoredForHalfASecond_data();
    void keysAreIgnoredForHalfASecond();
};

void TestInstallerWizardRuns::success()
{
    QFETCH(RunMode, mode);
    WizardDriver driver;
    driver.sandbox.setScenario(kWaiting);
    driver.sandbox.write(kPreferences, "colour = blue\n");
    driver.wizard.setUninstallerPath(Sandbox::setupEngine());
    QVERIFY(driver.startRun(mode));
    QVERIFY(driver.shows(progressPage(mode)));
    const ProgressParts shown = driver.progress();
    QCOMPARE(shown.shownSteps(), 0);
    QVERIFY(shown.barSweeps());
    QCOMPARE(driver.mark->fill(), mode == RunMode::Uninstall ? 1.0 : 0.0);
    QCOMPARE(driver.mark->driftOffset(), 0.0); // it rests

    Q_EMIT driver.engine.progress(0.3);
    QCOMPARE(shown.track->target(), 0.3);
    QCOMPARE(driver.mark->fill(), mode == RunMode::Uninstall ? 1.0 - 0.3 : 0.3);
    Q_EMIT driver.engine.finished(true, QString());
    QCOMPARE(shown.caption->text(), kFinishing);
    QCOMPARE(shown.shownSteps(), 4);
    QVERIFY(driver.finishDelay()->isActive());
    QVERIFY(driver.shows(progressPage(mode)));
    QVERIFY(driver.comesTo(finishPage(mode)));
    QVERIFY(!driver.sandbox.read(kPreferences).isEmpty());
}

void TestInstallerWizardRuns::abandonedRunIsIgnored()
{
    WizardDriver driver;
    driver.sandbox.setScenario(kWaiting);
    QVERIFY(driver.startRun(RunMode::Install));
    Q_EMIT driver.engine.progress(0.4);
    const ProgressParts shown = driver.progress();
    const QString caption = shown.caption->text();
    driver.wizard.setRunMode(RunMode::Install);
    const double fill = driver.mark->fill();
    Q_EMIT driver.engine.progress(0.9);
    Q_EMIT driver.engine.statusChanged(u"Late"_s);
    Q_EMIT driver.engine.finished(false, u"Too late"_s);
    QCOMPARE(shown.track->target(), 0.0);
    QVERIFY(!shown.barSweeps());
    QCOMPARE(driver.mark->fill(), fill);
    QCOMPARE(shown.caption->text(), caption);
    QVERIFY(driver.shows("WelcomePage"));
    QCOMPARE(driver.status(), u"Administrator rights required"_s);
    QCOMPARE(driver.buttons(), (QStringList { u"Cancel ghost"_s, u"Next primary"_s }));
}

// The engine knows where its earlier copy is; any other folder would make a second one. The
// shortcut is a matter of the installation.
void TestInstallerWizardRuns::updateWithoutAFolder()
{
    WizardDriver driver;
    driver.sandbox.recordInstallation(u"1.6.8"_s, QString());
    driver.sandbox.setScenario("finish-at-once = yes\n");
    QVERIFY(driver.startRun(RunMode::Update));
    QTRY_COMPARE_WITH_TIMEOUT(driver.sandbox.engineRuns().size(), 1, kPatience);
    const QStringList run = driver.sandbox.engineRuns().first();
    QCOMPARE(run.filter(u"/DIR="_s) + run.filter(u"/TASKS="_s),
             (QStringList { u"/DIR="_s, u"/TASKS="_s }));
}

void TestInstallerWizardRuns::simulation()
{
    QFETCH(RunMode, mode);
    WizardDriver driver { QString() };
    driver.sandbox.write(kPreferences, "colour = blue\n");
    driver.show(mode);
    QCOMPARE(driver.click(kDeletePreferences), mode == RunMode::Uninstall);
    QVERIFY(driver.pressOnToTheRun(mode));
    const ProgressParts shown = driver.progress();
    QVERIFY(!shown.barSweeps());
    QTimer *timer = driver.simulationTimer();
    QVERIFY(timer);
    while (timer->isActive()) {
        QVERIFY(shown.caption->text() != kFinishing);
        const double fraction = shown.track->target();
        const double fill = mode == RunMode::Uninstall ? 1.0 - fraction : fraction;
        QVERIFY(std::abs(driver.mark->fill() - fill) < 1e-9);
        TimerWatch::fire(timer, 1);
        QVERIFY(shown.track->target() > fraction);
    }
    QCOMPARE(shown.caption->text(), kFinishing);
    QCOMPARE(shown.percent->text(), u"100%"_s);
    QCOMPARE(shown.shownSteps(), shown.stepTexts().size());
    QVERIFY(driver.finishDelay()->isActive());
    QVERIFY(driver.comesTo(finishPage(mode)));
    QVERIFY(!driver.sandbox.read(kPreferences).isEmpty());
    // The farewell follows the choice all the same.
    QCOMPARE(labelOf(driver.currentPage(),
                     u"Varnel Schematics and your preferences have been removed.\n"
                     "Thanks for using it — we hope to see you again soon."_s)
                 != nullptr,
             mode == RunMode::Uninstall);
}

// With no engine at all, with the program for another mode, with an uninstaller that is gone.
void TestInstallerWizardRuns::simulatesWithoutAnEngine()
{
    QFETCH(RunMode, mode);
    WizardDriver driver { mode == RunMode::Update ? QString() : Sandbox::setupEngine() };
    if (mode == RunMode::Install)
        driver.wizard.setEngine(nullptr);
    if (mode == RunMode::Update)
        driver.wizard.setUninstallerPath(Sandbox::setupEngine());
    driver.sandbox.recordInstallation(u"1.6.8"_s, driver.sandbox.path(u"gone"_s),
                                      driver.sandbox.path(u"gone/unins000.exe"_s));
    QVERIFY(driver.startRun(mode));
    QVERIFY(driver.finishSimulation());
    QVERIFY(driver.comesTo(finishPage(mode)));
    QVERIFY(driver.sandbox.engineRuns().isEmpty());
}

void TestInstallerWizardRuns::simulationEndsWithItsPage()
{
    WizardDriver driver { QString() };
    QVERIFY(driver.startRun(RunMode::Install));
    const ProgressParts shown = driver.progress();
    const QPointer<QTimer> timer = driver.simulationTimer();
    TimerWatch::fire(timer, 20);
    QVERIFY(shown.track->target() > 0.3);
    driver.wizard.setRunMode(RunMode::Install);
    QVERIFY(!timer || !timer->isActive());
    QVERIFY(driver.shows("WelcomePage"));
    QCOMPARE(shown.track->value(), 0.0);
    QCOMPARE(shown.track->target(), 0.0);

    QVERIFY(driver.startRun(RunMode::Install));
    QCOMPARE(shown.percent->text(), u"0%"_s);
    QVERIFY(shown.file->text().isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(shown.percent->text(), u"2%"_s, kPatience);
    // Also during the last look.
    QVERIFY(driver.finishSimulation());
    QVERIFY(driver.finishDelay()->isActive());
    driver.wizard.setRunMode(RunMode::Install);
    QVERIFY(!driver.finishDelay()->isActive());
}

// Nothing is done instead: no other uninstaller is run, no preferences are removed.
void TestInstallerWizardRuns::missingPrograms()
{
    // That of the uninstaller is reported while the run is still being started.
    for (RunMode mode : { RunMode::Update, RunMode::Uninstall }) {
        WizardDriver driver;
        driver.sandbox.write(kPreferences, "colour = blue\n");
        driver.sandbox.recordInstallation(u"1.6.8"_s, QString(), Sandbox::setupEngine());
        driver.engine.setSetupExecutable(driver.sandbox.path(u"no/such/setup.exe"_s));
        driver.wizard.setUninstallerPath(driver.sandbox.path(u"no/such/unins000.exe"_s));
        const QSignalSpy finished(&driver.engine, &InstallerEngine::finished);
        driver.show(mode);
        QCOMPARE(driver.click(kDeletePreferences), mode == RunMode::Uninstall);
        QVERIFY(driver.pressOnToTheRun(mode));
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, kPatience);
        QVERIFY(driver.shows(progressPage(mode)));
        QCOMPARE(driver.status(), u"Setup could not finish"_s);
        QCOMPARE(driver.progress().caption->text(), finished.first().at(1).toString());
        QVERIFY(driver.sandbox.engineRuns().isEmpty());
        QVERIFY(!driver.sandbox.read(kPreferences).isEmpty());
    }
}

// Neither a late signal of the engine nor a pending timer leads away from it.
void TestInstallerWizardRuns::failureIsFinal()
{
    WizardDriver driver;
    driver.sandbox.setScenario(kWaiting);
    QVERIFY(driver.startRun(RunMode::Install));
    Q_EMIT driver.engine.progress(0.3);
    Q_EMIT driver.engine.finished(false, QString());
    Q_EMIT driver.engine.progress(0.9);
    Q_EMIT driver.engine.currentFile(u"late.dll"_s);
    Q_EMIT driver.engine.statusChanged(u"Late"_s);
    Q_EMIT driver.engine.finished(true, QString());
    QVERIFY(!driver.finishDelay()->isActive());
    QVERIFY(driver.shows("InstallingPage"));
    QCOMPARE(driver.progress().caption->text(), u"Setup did not complete."_s);
    QCOMPARE(driver.status(), u"Setup could not finish"_s);
    QCOMPARE(driver.buttons(), QStringList { u"Close danger"_s });
    QCOMPARE(driver.progress().percent->text(), u"30%"_s);
    QVERIFY(driver.progress().file->text().isEmpty());
    QCOMPARE(driver.mark->fill(), 0.3);
    QTest::mouseClick(driver.button(u"Close"_s), Qt::LeftButton);
    QVERIFY(!driver.wizard.isVisible());
}

void TestInstallerWizardRuns::keysAreIgnoredForHalfASecond_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("enter") << Qt::Key_Enter;
    QTest::newRow("space") << Qt::Key_Space;
    QTest::newRow("escape") << Qt::Key_Escape;
}

// A user who types ahead has not seen the failure yet. Other keys work at once, like the mouse.
void TestInstallerWizardRuns::keysAreIgnoredForHalfASecond()
{
    QFETCH(const Qt::Key, key);
    WizardDriver driver;
    driver.sandbox.setScenario(kWaiting);
    QVERIFY(driver.startRun(RunMode::Update) && QTest::qWaitForWindowActive(&driver.wizard));
    auto *guard = driver.wizard.findChild<KeyGuard *>()->findChild<QTimer *>();
    QCOMPARE(guard->interval(), 500);
    sendKey(QEvent::KeyPress, key); // is held down when it fails
    Q_EMIT driver.engine.finished(false, u"The disk is full."_s);
    // Nothing else happens until the event loop runs.
    QVERIFY(guard->isActive());
    QPushButton *close = driver.button(u"Close"_s);
    QCOMPARE(QApplication::focusWidget(), close);
    sendKey(QEvent::KeyPress, Qt::Key_Tab);
    QVERIFY(!close->hasFocus());
    close->setFocus();
    sendKey(QEvent::KeyPress, key, true);
    sendKey(QEvent::KeyRelease, key);
    QVERIFY(driver.wizard.isVisible());
    sendKey(QEvent::KeyPress, key);
    QVERIFY(!close->isDown());
    sendKey(QEvent::KeyRelease, key);
    QVERIFY(driver.wizard.isVisible());
    // The focus may be elsewhere; without a window in front there is none at all.
    QKeyEvent toTheWindow(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&driver.wizard, &toTheWindow);
    QVERIFY(driver.wizard.isVisible());
    // Nor does what began within the half second and ends after it.
    sendKey(QEvent::KeyPress, key);
    TimerWatch::fire(guard, 1);
    QVERIFY(!guard->isActive());
    sendKey(QEvent::KeyPress, key, true);
    sendKey(QEvent::KeyRelease, key);
    QVERIFY(driver.wizard.isVisible());

    if (key == Qt::Key_Return) { // needs the focus
        driver.minimizeButton()->setFocus();
        driver.key(key);
        QVERIFY(driver.wizard.isVisible());
        close->setFocus();
    }
    // Nothing may be looked at within: on Windows, an event loop that runs inside the one that is
    // to end makes the latter forget about it.
    WizardDriver::settle();
    const int code =
        WizardDriver::runUntilQuit([&] { QTest::keyClick(driver.wizard.windowHandle(), key); });
    QCOMPARE(code, 0);
    QVERIFY(!driver.wizard.isVisible());
}

QTEST_MAIN(TestInstallerWizardRuns)
#include "tst_installerwizard_runs.moc"
