#include "app/applicationfonts.h"
#include "pages/confirmuninstallpage.h"
#include "pages/finishedpage.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "pages/uninstallcompletepage.h"
#include "pages/updatefinishedpage.h"
#include "pages/welcomepage.h"
#include "theme/thememanager.h"
#include "widgets/animatedmark.h"
#include "widgets/progresstrack.h"
#include "wizard/installingpage.h"
#include "wizard/uninstallingpage.h"
#include "wizard/updatingpage.h"
#include "wizard/olddriver.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTimer>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kTick = 70; // ms
constexpr int kFinishDelay = 500; // ms

/// Walks to where the run has just been started.
bool startRun(WizardDriver &driver, RunMode mode)
{
    driver.show(mode);
    switch (mode) {
    case RunMode::Install:
        return driver.goToReadyPage() && driver.press(u"Install"_s);
    case RunMode::Update:
        return driver.pressAll({ u"Update Now"_s, u"Update"_s });
    case RunMode::Uninstall:
        return driver.press(u"Uninstall"_s);
    }
    return false;
}

} // namespace

class TestInstallerWizardSimulation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void start_data();
    void start();
    void ticks_data();
    void ticks();
    void filesAreMadeUp();
    void runsInRealTime();
    void nullEngineIsNoEngine();
    void touchesNothing();
    void uninstallKeepsThePreferences();
    void missingUninstallerIsSimulated();
    void otherModesUninstallerDoesNotCount();
    void leavingStopsIt();
    void secondRunStartsOver();
};

void TestInstallerWizardSimulation::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestInstallerWizardSimulation::start_data()
{
    QTest::addColumn<RunMode>("mode");
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<double>("fill");
    QTest::newRow("install") << RunMode::Install << QByteArray("InstallingPage")
                             << QStringList { u"Extracting application files"_s,
                                              u"Installing WebView2 Runtime"_s,
                                              u"Registering .sch and .pcb file types"_s,
                                              u"Creating shortcuts"_s }
                             << u"This may take a few minutes."_s << 0.0;
    QTest::newRow("update") << RunMode::Update << QByteArray("UpdatingPage")
                            << QStringList { u"Backing up your settings"_s,
                                             u"Replacing application files"_s,
                                             u"Migrating configuration"_s,
                                             u"Restarting services"_s }
                            << u"This may take a few minutes."_s << 0.0;
    QTest::newRow("uninstall") << RunMode::Uninstall << QByteArray("UninstallingPage")
                               << QStringList { u"Stopping Varnel Schematics"_s,
                                                u"Removing application files"_s,
                                                u"Removing shortcuts"_s,
                                                u"Unregistering file types"_s }
                               << u"Do not turn off your PC."_s << 1.0;
}

void TestInstallerWizardSimulation::start()
{
    QFETCH(RunMode, mode);
    WizardDriver driver { QString() };
    QVERIFY(startRun(driver, mode));
    QTEST(QByteArray(driver.currentPage()->metaObject()->className()), "page");
    QCOMPARE(driver.status(), u"Do not turn off your PC"_s);
    QCOMPARE(driver.buttons(), QStringList { u"Cancel ghost disabled"_s });
    QTEST(driver.steps(), "steps");
    QTEST(driver.caption()->text(), "caption");
    QCOMPARE(driver.percent(), u"0%"_s);
    QVERIFY(driver.file().isEmpty());
    QCOMPARE(driver.shownSteps(), 0);
    QCOMPARE(driver.track()->target(), 0.0);
    QVERIFY(!driver.track()->isIndeterminate());
    QTEST(driver.mark->fill(), "fill");
    QVERIFY(!driver.mark->isIdle());
}

void TestInstallerWizardSimulation::ticks_data()
{
    QTest::addColumn<RunMode>("mode");
    QTest::addColumn<double>("step");
    QTest::addColumn<int>("count");
    QTest::addColumn<QByteArray>("finishPage");
    QTest::newRow("install") << RunMode::Install << 2.2 << 46 << QByteArray("FinishedPage");
    QTest::newRow("update") << RunMode::Update << 2.4 << 42 << QByteArray("UpdateFinishedPage");
    QTest::newRow("uninstall") << RunMode::Uninstall << 2.4 << 42
                               << QByteArray("UninstallCompletePage");
}

void TestInstallerWizardSimulation::ticks()
{
    QFETCH(RunMode, mode);
    QFETCH(double, step);
    QFETCH(int, count);
    QFETCH(QByteArray, finishPage);
    WizardDriver driver { QString() };
    QVERIFY(startRun(driver, mode));
    QTRY_VERIFY_WITH_TIMEOUT(driver.watch.repeating(kTick), kPatience);
    QTimer *timer = driver.watch.repeating(kTick);
    // The first tick has come by itself; on a busy machine perhaps another one.
    const int first = qRound(driver.track()->target() * 100.0 / step);
    QVERIFY(first >= 1 && first < count / 2);
    for (int i = first; i <= count; ++i) {
        if (i > first)
            TimerWatch::fire(timer, 1);
        const double percent = std::min(i * step, 100.0);
        QCOMPARE(driver.percent(), u"%1%"_s.arg(qRound(percent)));
        QVERIFY(std::abs(driver.track()->target() - percent / 100.0) < 1e-9);
        const double fill = mode == RunMode::Uninstall ? 1.0 - percent / 100.0 : percent / 100.0;
        QVERIFY(std::abs(driver.mark->fill() - fill) < 1e-9);
        QCOMPARE(driver.shownSteps(), 1 + (percent >= 25) + (percent >= 50) + (percent >= 75));
        QCOMPARE(timer->isActive(), i < count);
        QVERIFY(!driver.track()->isIndeterminate());
        QCOMPARE(driver.caption()->text() == u"Finishing up…"_s, i == count);
    }
    QTRY_COMPARE_WITH_TIMEOUT(QByteArray(driver.currentPage()->metaObject()->className()),
                              finishPage, kPatience);
}

void TestInstallerWizardSimulation::filesAreMadeUp()
{
    WizardDriver driver { QString() };
    QVERIFY(startRun(driver, RunMode::Install));
    QTRY_VERIFY_WITH_TIMEOUT(driver.watch.repeating(kTick), kPatience);
    QStringList files;
    while (driver.watch.repeating(kTick)->isActive()) {
        if (!driver.file().isEmpty() && (files.isEmpty() || files.last() != driver.file()))
            files.append(driver.file());
        TimerWatch::fire(driver.watch.repeating(kTick), 1);
    }
    if (files.isEmpty())
        QSKIP("One run in seventy thousand names no file");
    const QString folder = uR"(C:\Program Files\Varnel Schematics\)"_s;
    for (const QString &file : files)
        QVERIFY2(file.startsWith(folder) && file.size() > folder.size(), qPrintable(file));
}

void TestInstallerWizardSimulation::runsInRealTime()
{
    WizardDriver driver { QString() };
    QVERIFY(startRun(driver, RunMode::Update));
    QElapsedTimer clock;
    clock.start();
    QTRY_VERIFY_WITH_TIMEOUT(driver.shows<UpdateFinishedPage>(), kPatience);
    QVERIFY(clock.elapsed() >= (42 * kTick + kFinishDelay) * 9 / 10);
    QVERIFY(driver.watch.shots().contains(kFinishDelay));
    QCOMPARE(driver.status(), u"Updated in 38 seconds"_s);
}

void TestInstallerWizardSimulation::nullEngineIsNoEngine()
{
    for (RunMode mode : { RunMode::Install, RunMode::Update, RunMode::Uninstall }) {
        WizardDriver driver;
        driver.wizard.setEngine(nullptr);
        driver.wizard.setUninstallerPath(Sandbox::setupEngine());
        QVERIFY(startRun(driver, mode));
        QVERIFY(driver.finishSimulation());
        QVERIFY(driver.sandbox.engineRuns().isEmpty());
    }
}

void TestInstallerWizardSimulation::touchesNothing()
{
    WizardDriver driver { QString() };
    QVERIFY(startRun(driver, RunMode::Install));
    QVERIFY(driver.finishSimulation());
    QTRY_VERIFY_WITH_TIMEOUT(driver.shows<FinishedPage>(), kPatience);
    QVERIFY(driver.sandbox.tempFiles().isEmpty());
    QVERIFY(QDir(driver.sandbox.path(u"programs"_s)).isEmpty());
    QVERIFY(QDir(driver.sandbox.path(u"desktop"_s)).isEmpty());
    QVERIFY(driver.sandbox.registry().isEmpty());
}

void TestInstallerWizardSimulation::uninstallKeepsThePreferences()
{
    const QString preferences = u"appdata/Varnel Schematics/Varnel Schematics/settings.ini"_s;
    WizardDriver driver { QString() };
    driver.sandbox.write(preferences, "colour = blue\n");
    driver.show(RunMode::Uninstall);
    QVERIFY(driver.click(u"Also delete my preferences and cached data"_s));
    QVERIFY(driver.press(u"Uninstall"_s));
    QCOMPARE(driver.steps().size(), 5);
    QCOMPARE(driver.steps().last(), u"Removing user data"_s);
    QVERIFY(driver.finishSimulation());
    QTRY_VERIFY_WITH_TIMEOUT(driver.shows<UninstallCompletePage>(), kPatience);
    QCOMPARE(driver.sandbox.read(preferences), QByteArray("colour = blue\n"));
    // The farewell follows the choice all the same.
    QVERIFY(labelOf(driver.currentPage(),
                    u"Varnel Schematics and your preferences have been removed.\n"
                    "Thanks for using it — we hope to see you again soon."_s));
}

void TestInstallerWizardSimulation::missingUninstallerIsSimulated()
{
    WizardDriver driver;
    driver.sandbox.recordInstallation(u"1.6.8"_s, driver.sandbox.path(u"gone"_s),
                                      driver.sandbox.path(u"gone/unins000.exe"_s));
    QVERIFY(startRun(driver, RunMode::Uninstall));
    QVERIFY(driver.finishSimulation());
    QTRY_VERIFY_WITH_TIMEOUT(driver.shows<UninstallCompletePage>(), kPatience);
    QVERIFY(driver.sandbox.engineRuns().isEmpty());
}

void TestInstallerWizardSimulation::otherModesUninstallerDoesNotCount()
{
    for (RunMode mode : { RunMode::Install, RunMode::Update }) {
        WizardDriver driver { QString() };
        driver.wizard.setUninstallerPath(Sandbox::setupEngine());
        QVERIFY(startRun(driver, mode));
        QVERIFY(driver.finishSimulation());
    }
}

void TestInstallerWizardSimulation::leavingStopsIt()
{
    WizardDriver driver { QString() };
    QVERIFY(startRun(driver, RunMode::Install));
    QTRY_VERIFY_WITH_TIMEOUT(driver.watch.repeating(kTick), kPatience);
    const QPointer<QTimer> timer = driver.watch.repeating(kTick);
    TimerWatch::fire(timer, 20);
    QVERIFY(driver.track()->target() > 0.3);
    const ProgressTrack *track = driver.track();
    driver.wizard.setRunMode(RunMode::Install);
    QVERIFY(!timer || !timer->isActive());
    QVERIFY(driver.shows<WelcomePage>());
    QCOMPARE(track->value(), 0.0);
    QCOMPARE(track->target(), 0.0);
    QCOMPARE(driver.mark->fill(), 1.0);
    QVERIFY(driver.mark->isIdle());
}

void TestInstallerWizardSimulation::secondRunStartsOver()
{
    WizardDriver driver { QString() };
    QVERIFY(startRun(driver, RunMode::Update));
    QTRY_VERIFY_WITH_TIMEOUT(driver.watch.repeating(kTick), kPatience);
    TimerWatch::fire(driver.watch.repeating(kTick), 30);
    driver.wizard.setRunMode(RunMode::Update);
    QVERIFY(driver.pressAll({ u"Update Now"_s, u"Update"_s }));
    QCOMPARE(driver.percent(), u"0%"_s);
    QVERIFY(driver.file().isEmpty());
    QCOMPARE(driver.shownSteps(), 0);
    QTRY_COMPARE_WITH_TIMEOUT(driver.percent(), u"2%"_s, kPatience);
}

QTEST_MAIN(TestInstallerWizardSimulation)
#include "tst_installerwizard_simulation.moc"
