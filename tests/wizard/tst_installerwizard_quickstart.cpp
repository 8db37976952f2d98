// A user who is faster than the window, which enters its first page again once it is on screen.

#include "app/applicationfonts.h"
#include "pages/licensepage.h"
#include "pages/strictwarnings.h"
#include "theme/thememanager.h"
#include "widgets/progresstrack.h"
#include "widgets/radiooption.h"
#include "wizard/olddriver.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kTick = 70; // ms
constexpr int kLongAfter = 150; // ms; the first page would have been entered again by then
constexpr int kAtOnce = -1; // before the event loop has turned even once

QByteArray pageOf(const WizardDriver &driver)
{
    return driver.currentPage()->metaObject()->className();
}

/// Presses on to the run without a turn of the event loop in between.
void startRun(WizardDriver &driver, RunMode mode)
{
    QStringList ways { u"Uninstall"_s };
    if (mode == RunMode::Update)
        ways = { u"Update Now"_s, u"Update"_s };
    if (mode == RunMode::Install)
        ways = { u"Next"_s, u"Next"_s, u"Next"_s, u"Next"_s, u"Next"_s, u"Install"_s };
    for (const QString &way : std::as_const(ways)) {
        if (driver.shows<LicensePage>())
            driver.currentPage()->findChildren<RadioOption *>().last()->click();
        driver.button(way)->click();
    }
}

} // namespace

class TestInstallerWizardQuickStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void engine_data();
    void engine();
    void simulation_data() { engine_data(); }
    void simulation();

private:
    /// Shows the window and starts the run that many milliseconds later; returns when it runs.
    static void showAndStart(WizardDriver &driver);
};

void TestInstallerWizardQuickStart::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestInstallerWizardQuickStart::engine_data()
{
    QTest::addColumn<RunMode>("mode");
    QTest::addColumn<QByteArray>("progressPage");
    QTest::addColumn<QByteArray>("finishPage");
    QTest::addColumn<int>("delay");
    for (int delay : { kAtOnce, 20 }) {
        const auto row = [delay](const char *name, RunMode mode, const char *progressPage,
                                 const char *finishPage) {
            QTest::addRow("%s, %d ms", name, delay)
                << mode << QByteArray(progressPage) << QByteArray(finishPage) << delay;
        };
        row("install", RunMode::Install, "InstallingPage", "FinishedPage");
        row("update", RunMode::Update, "UpdatingPage", "UpdateFinishedPage");
        row("uninstall", RunMode::Uninstall, "UninstallingPage", "UninstallCompletePage");
    }
}

void TestInstallerWizardQuickStart::showAndStart(WizardDriver &driver)
{
    QFETCH(const RunMode, mode);
    QFETCH(const int, delay);
    driver.wizard.setRunMode(mode);
    driver.wizard.show();
    bool isStarted = false;
    const auto start = [&] {
        startRun(driver, mode);
        isStarted = true;
    };
    if (delay == kAtOnce)
        start();
    else
        QTimer::singleShot(delay, Qt::PreciseTimer, &driver.wizard, start);
    QTRY_VERIFY_WITH_TIMEOUT(isStarted, kPatience);
}

void TestInstallerWizardQuickStart::engine()
{
    QFETCH(const QByteArray, progressPage);
    QFETCH(const QByteArray, finishPage);
    WizardDriver driver;
    driver.sandbox.setScenario("delay-ms = 20\n"); // long enough to be looked at
    driver.wizard.setUninstallerPath(Sandbox::setupEngine());
    const QSignalSpy finished(&driver.engine, &InstallerEngine::finished);
    QElapsedTimer clock;
    clock.start();
    showAndStart(driver);
    QTRY_VERIFY_WITH_TIMEOUT(clock.elapsed() > kLongAfter, kPatience);
    QCOMPARE(pageOf(driver), progressPage);
    QTRY_COMPARE_WITH_TIMEOUT(pageOf(driver), finishPage, kPatience);
    QCOMPARE(driver.sandbox.engineRuns().size(), 1);
    QCOMPARE(finished, (QList<QVariantList> { { true, QString() } }));
}

void TestInstallerWizardQuickStart::simulation()
{
    QFETCH(const RunMode, mode);
    QFETCH(const QByteArray, progressPage);
    QFETCH(const QByteArray, finishPage);
    WizardDriver driver { QString() };
    showAndStart(driver);
    QTRY_VERIFY_WITH_TIMEOUT(driver.watch.repeating(kTick), kPatience);
    QTimer *timer = driver.watch.repeating(kTick);
    const double atFirst = driver.track()->target();
    QTRY_VERIFY_WITH_TIMEOUT(driver.track()->target() > atFirst, kPatience); // it really runs
    QCOMPARE(pageOf(driver), progressPage);

    // One run makes so many ticks, neither begun anew on the way nor twice as fast.
    const double step = mode == RunMode::Install ? 2.2 : 2.4;
    const int ticksSoFar = qRound(driver.track()->target() * 100.0 / step);
    const int ticks = mode == RunMode::Install ? 46 : 42;
    TimerWatch::fire(timer, ticks - ticksSoFar - 1);
    QVERIFY(timer->isActive());
    TimerWatch::fire(timer, 1);
    QVERIFY(!timer->isActive());
    QTRY_COMPARE_WITH_TIMEOUT(pageOf(driver), finishPage, kPatience);
    QVERIFY(driver.sandbox.engineRuns().isEmpty());
}

QTEST_MAIN(TestInstallerWizardQuickStart)
#include "tst_installerwizard_quickstart.moc"
