#include "engine/enginescene.h"
#include "engine/process.h"
#include "support/stricttest.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QSemaphore>
#include <QTest>
#include <QThread>

using namespace Qt::Literals::StringLiterals;

// Runs that are stopped or replaced, from outside and from within the engine's own signals.
class TestInstallerEngineStop : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void hangingRun_data();
    void hangingRun();
    void stopBeforeAndAfterTheRun();
    void heldLog();
    void stopFromASignal();
    void stopFromTheLastPollOfAFailure();
    void answerToTheLastSignals_data();
    void answerToTheLastSignals();
};

void TestInstallerEngineStop::hangingRun_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<QByteArray>("end");
    QTest::newRow("stop, ignores requests to end")
        << QByteArray("ignore-termination = yes") << QByteArray("stop");
    QTest::newRow("stop, with a child that holds the pipes")
        << QByteArray("hold-pipes = 5") << QByteArray("stop");
    QTest::newRow("destruction") << QByteArray("ignore-termination = yes")
                                 << QByteArray("destruction");
    QTest::newRow("new run") << QByteArray() << QByteArray("new run");
}

void TestInstallerEngineStop::hangingRun()
{
    QFETCH(const QByteArray, scenario);
    QFETCH(const QByteArray, end);
    HangingScene scene(scenario);
    QVERIFY(processExists(scene.processId));
    QCOMPARE(scene.sandbox.tempFiles().size(), 2);
    const QString status = scene.engine.statusFilePath();
    scene.record.events.clear();
    scene.sandbox.setScenario("");

    QElapsedTimer clock;
    clock.start();
    if (end == "stop")
        scene.engine.stop();
    else if (end == "destruction")
        scene.owner.reset();
    else
        scene.start();
    QVERIFY(clock.elapsed() < 2000);
    QVERIFY(!processExists(scene.processId));
    QVERIFY(!QFile::exists(status));
    QCOMPARE(scene.record.events, QStringList());
    if (end == "new run") {
        QVERIFY(scene.record.waitForEnd());
        scene.record.settle();
        QCOMPARE(scene.record.successes, QList<bool> { true });
        QCOMPARE(scene.sandbox.tempFiles().size(), 2);
        return;
    }
    QCOMPARE(scene.sandbox.tempFiles(), QStringList());
    if (end == "stop") {
        scene.record.settle();
        QCOMPARE(scene.record.events, QStringList());
        QTRY_VERIFY(scene.engine.findChildren<QObject *>().isEmpty());
    }
}

void TestInstallerEngineStop::stopBeforeAndAfterTheRun()
{
    EngineScene scene;
    scene.start();
    scene.engine.stop();
    scene.engine.stop();
    scene.engine.poll();
    scene.record.settle();
    QCOMPARE(scene.record.events, QStringList());
    QCOMPARE(scene.sandbox.tempFiles(), QStringList());
    QVERIFY(scene.toTheEnd());
    QCOMPARE(scene.sandbox.tempFiles().size(), 2);
    scene.engine.stop();
    QCOMPARE(scene.sandbox.tempFiles(), QStringList());
    QCOMPARE(scene.engine.statusFilePath(), QString());
    QCOMPARE(scene.engine.logFilePath(), QString());
}

// As by the engine's second process, which is killed too. The window must not hang with it.
void TestInstallerEngineStop::heldLog()
{
#ifndef Q_OS_WIN
    QSKIP("Here a file that a process has open can be removed");
#endif
    for (const int milliseconds : { 300, 10'000 }) {
        const bool isTooLong = milliseconds > 2000;
        HangingScene scene;
        auto hold = std::make_unique<HeldFile>(scene.engine.logFilePath());
        QSemaphore isStopped;
        bool wasStopped = false;
        const std::unique_ptr<QThread> holder(QThread::create([&] {
            wasStopped = isStopped.tryAcquire(1, milliseconds);
            hold.reset();
        }));
        holder->start();
        scene.engine.stop();
        isStopped.release();
        QVERIFY(holder->wait());
        QCOMPARE(wasStopped, isTooLong);
        QCOMPARE(scene.sandbox.tempFiles().isEmpty(), !isTooLong);
    }
}

// A stopped run emits nothing more, even if it is stopped in the middle of a poll.
void TestInstallerEngineStop::stopFromASignal()
{
    for (const QString &signal : { u"progress 0.25"_s, u"file a"_s, u"status c"_s, u"file b"_s }) {
        EngineScene scene("stall = forever\nstage = start\nlog-none = yes");
        scene.start();
        scene.writeStatus("progress=25\nfile=a\nstatus=c\n");
        scene.writeLog("x   Dest filename: b\r\n");
        const auto stopAtSignal = [&scene, &signal] {
            if (scene.record.events.last() == signal)
                scene.engine.stop();
        };
        connect(&scene.engine, &InstallerEngine::progress, this, stopAtSignal);
        connect(&scene.engine, &InstallerEngine::currentFile, this, stopAtSignal);
        connect(&scene.engine, &InstallerEngine::statusChanged, this, stopAtSignal);
        scene.engine.poll();
        QCOMPARE(scene.record.events.last(), signal);
        scene.record.settle();
        QCOMPARE(scene.record.events.last(), signal);
        QCOMPARE(scene.sandbox.tempFiles(), QStringList());
    }
}

void TestInstallerEngineStop::stopFromTheLastPollOfAFailure()
{
    EngineScene scene("finish-at-once = yes\nexit-code = 4");
    scene.start();
    scene.writeStatus("status=last words\n");
    const QString log = u"temp/"_s + QFileInfo(scene.engine.logFilePath()).fileName();
    const auto stop = [&] {
        scene.engine.stop();
        scene.sandbox.write(log, "As where it cannot be removed\n");
    };
    connect(&scene.engine, &InstallerEngine::statusChanged, this, stop);
    QVERIFY(scene.process()->waitForFinished()); // without a timer, so without an earlier poll
    scene.record.settle();
    QCOMPARE(scene.record.events, QStringList { u"status last words"_s });
    QCOMPARE(scene.engine.lastLogPath(), QString());
    QVERIFY(!QFile::exists(scene.keptLog()));
}

void TestInstallerEngineStop::answerToTheLastSignals_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<QString>("lastSignal");
    QTest::addColumn<bool>("isRestart");
    for (const bool isRestart : { false, true }) {
        const char *const answer = isRestart ? "new run" : "stop";
        QTest::addRow("%s from the last poll", answer)
            << QByteArray("files = 1\nlog-none = yes\nprogress = 25\nstatus = last words")
            << u"status last words"_s << isRestart;
        QTest::addRow("%s at a hundred percent", answer)
            << QByteArray("finish-at-once = yes") << u"progress 1"_s << isRestart;
    }
}

void TestInstallerEngineStop::answerToTheLastSignals()
{
    QFETCH(const QByteArray, scenario);
    QFETCH(const QString, lastSignal);
    QFETCH(const bool, isRestart);
    EngineScene scene(scenario);
    bool isAnswered = false;
    const auto answer = [&] {
        if (isAnswered || scene.record.events.last() != lastSignal)
            return;
        isAnswered = true;
        scene.sandbox.setScenario("finish-at-once = yes\nexit-code = 2");
        if (isRestart)
            scene.start();
        else
            scene.engine.stop();
    };
    connect(&scene.engine, &InstallerEngine::statusChanged, this, answer);
    connect(&scene.engine, &InstallerEngine::progress, this, answer);
    scene.start();
    QTRY_VERIFY_WITH_TIMEOUT(isAnswered, kPatience);
    if (isRestart)
        QVERIFY(scene.record.waitForEnd());
    scene.record.settle();
    QStringList last { lastSignal };
    if (isRestart)
        last << u"failed Installation was cancelled."_s;
    QCOMPARE(scene.record.events.last(last.size()), last);
    QCOMPARE(scene.record.successes.size(), int(isRestart));
}

QTEST_GUILESS_MAIN(TestInstallerEngineStop)
#include "tst_installerengine_stop.moc"
