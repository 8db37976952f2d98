#include "engine/enginescene.h"
#include "support/footprint.h"
#include "support/stricttest.h"
#include "support/timercounter.h"

#include <QFile>
#include <QProcess>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Many runs in one process, of which none leaves anything behind.
class TestInstallerEngineLives : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void oneAfterTheOther();
};

namespace {

constexpr int kLives = 200;
constexpr int kWarmUp = 20; ///< lives after which everything is there that is made only once
constexpr int kMostGrowth = 128; ///< kB in all lives

} // namespace

void TestInstallerEngineLives::oneAfterTheOther()
{
    Sandbox sandbox;
    InstallerEngine engine;
    engine.setSetupExecutable(Sandbox::setupEngine());
    const QString folder = sandbox.path(u"app"_s);

    qint64 memory = 0;
    qsizetype handles = 0;
    for (int life = 0; life < kLives; ++life) {
        EngineRecord record(engine);
        // Every tenth one fails, which takes another path and keeps a log.
        const bool fails = life % 10 == 9;
        sandbox.setScenario(fails ? "files = 2\nexit-code = 4\nmessage-box = Full." : "files = 2");
        engine.startInstall(folder, {});
        QVERIFY(record.waitForEnd());
        QCOMPARE(record.successes, QList<bool> { !fails });
        sandbox.setScenario({});
        engine.startUninstall(folder + u"/unins000.exe"_s);
        QVERIFY(record.waitForEnd(2));
        QCOMPARE(record.successes.last(), true);
        QVERIFY(!QFile::exists(folder));
        QVERIFY(sandbox.tempFiles().size() <= 2); // the removal's status, and the kept log

        record.settle();
        if (life == kWarmUp) {
            memory = memoryInUse();
            handles = openHandles();
        }
        // Of the ended run's objects only the last process is still there.
        QCOMPARE(engine.findChildren<QProcess *>().size(), 1);
    }
    engine.stop();
    QCOMPARE(sandbox.tempFiles(), QStringList { u"varnel_setup_last.log"_s });
    QTRY_VERIFY(engine.findChildren<QObject *>().isEmpty());

    TimerCounter timers;
    QTest::qWait(200); // as long as four polls
    // Waiting itself is done with at most one timer.
    QVERIFY2(timers.fired <= 1, qPrintable(QString::number(timers.fired)));
    if (memory < 0 || handles < 0)
        QSKIP("neither memory nor handles are known here");
    QVERIFY2(openHandles() <= handles, qPrintable(u"%1 -> %2"_s.arg(handles).arg(openHandles())));
    const qint64 growth = memoryInUse() - memory;
    qInfo("memory grew by %lld kB in %d lives", growth, kLives - kWarmUp);
#ifndef __SANITIZE_ADDRESS__ // which keeps freed memory on purpose
    QVERIFY2(growth < kMostGrowth, qPrintable(QString::number(growth)));
#endif
}

QTEST_GUILESS_MAIN(TestInstallerEngineLives)
#include "tst_installerengine_lives.moc"
