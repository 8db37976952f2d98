#include "app/applicationfonts.h"
#include "pages/finishedpage.h"
#include "pages/strictwarnings.h"
#include "pages/uninstallcompletepage.h"
#include "support/footprint.h"
#include "support/timercounter.h"
#include "system/installation.h"
#include "wizard/wizarddriver.h"

#include <QApplication>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

// A window that installs and then removes, 200 times in one process, and every time a new one.
class TestInstallerWizardLives : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init() { failOnWarnings(); }
    void nothingIsLeftOfThem();
};

namespace {

constexpr int kLives = 200;
constexpr int kWarmUp = 40; ///< lives after which everything is there that is made only once
constexpr int kFinishDelay = 500; ///< ms from a run's end to the page that says so
constexpr int kMostGrowth = 4; ///< kB per life; a window takes hundreds of times as much

/// Waits for the page that ends a run, but not through the delay before it.
template <typename Page>
bool runsToItsEnd(WizardDriver &driver)
{
    return QTest::qWaitFor(
        [&driver] {
            for (QTimer *timer : driver.wizard.findChildren<QTimer *>()) {
                if (timer->isSingleShot() && timer->interval() == kFinishDelay)
                    TimerWatch::fire(timer, 1);
            }
            return driver.shows<Page>();
        },
        kPatience);
}

} // namespace

void TestInstallerWizardLives::nothingIsLeftOfThem()
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
        driver.show(RunMode::Install);
        QVERIFY(driver.goToReadyPage());
        QVERIFY(driver.press(u"Install"_s));
        QVERIFY(runsToItsEnd<FinishedPage>(driver));
        driver.sandbox.adoptRegistry();
        QVERIFY(!installedVersion().isEmpty());
        driver.show(RunMode::Uninstall);
        QVERIFY(driver.press(u"Uninstall"_s));
        QVERIFY(runsToItsEnd<UninstallCompletePage>(driver));
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
