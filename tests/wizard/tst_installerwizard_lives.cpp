#include "support/footprint.h"
#include "support/timercounter.h"
#include "system/installation.h"
#include "wizard/wizardtest.h"

using namespace Qt::Literals::StringLiterals;

// A window that installs and then removes, 200 times in one process, and every time a new one.
class TestInstallerWizardLives : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void livesLeaveNothingBehind();
};

namespace {

constexpr int kLives = 200;
constexpr int kWarmUp = 40; ///< lives after which everything is there that is made only once
constexpr int kMostGrowth = 4; ///< kB per life; a window takes hundreds of times as much

/// Waits for the page that ends a run, but not through the delay before it.
bool runsToItsEnd(const WizardDriver &driver, const char *finishPage)
{
    return QTest::qWaitFor(
        [&] {
            TimerWatch::fire(driver.finishDelay(), 1);
            return driver.shows(finishPage);
        },
        kPatience);
}

} // namespace

void TestInstallerWizardLives::livesLeaveNothingBehind()
{
    qputenv("VARNEL_REDUCED_MOTION", "1");
    qint64 memory = 0;
    qsizetype handles = 0;
    for (int life = 0; life < kLives; ++life) {
        if (life == kWarmUp) {
            memory = memoryInUse();
            handles = openHandles();
        }
        WizardDriver driver;
        driver.sandbox.setScenario("files = 2");
        QVERIFY(driver.startRun(RunMode::Install));
        QVERIFY(runsToItsEnd(driver, "FinishedPage"));
        driver.sandbox.adoptRegistry();
        QVERIFY(!installedVersion().isEmpty());
        QVERIFY(driver.startRun(RunMode::Uninstall));
        QVERIFY(runsToItsEnd(driver, "UninstallCompletePage"));
        driver.sandbox.adoptRegistry();
        QVERIFY(installedVersion().isEmpty());
        driver.engine.stop();
        QCOMPARE(driver.sandbox.tempFiles(), QStringList());
    }
    QVERIFY(QApplication::topLevelWidgets().isEmpty());

    // As long as any timer of a window's takes to fire; waiting itself is done with at most one.
    TimerCounter timers;
    QTest::qWait(1000);
    QVERIFY2(timers.fired <= 1, qPrintable(QString::number(timers.fired)));

    QVERIFY2(openHandles() <= handles, qPrintable(u"%1 -> %2"_s.arg(handles).arg(openHandles())));
    const qint64 growth = memoryInUse() - memory;
    qInfo("memory grew by %lld kB in %d lives", growth, kLives - kWarmUp);
#ifndef __SANITIZE_ADDRESS__ // which keeps freed memory on purpose
    QVERIFY2(growth < kMostGrowth * (kLives - kWarmUp), qPrintable(QString::number(growth)));
#endif
}

QTEST_MAIN(TestInstallerWizardLives)
#include "tst_installerwizard_lives.moc"
