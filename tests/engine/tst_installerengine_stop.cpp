#include "engine/enginescene.h"
#include "engine/installerengine.h"
#include "engine/process.h"
#include "support/sandbox.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>
#include <QThread>

#include <memory>

using namespace Qt::Literals::StringLiterals;

// Runs that are cut short, from outside and from within the engine's own signals.
class TestInstallerEngineStop : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void stop_data();
    void stop();
    void stopRightAfterTheStart();
    void logThatIsHeldForAMoment();
    void stopTwice();
    void stopAfterTheEnd();
    void runAfterAStop();
    void destruction_data();
    void destruction();
    void destructionWithoutARun();
    void newRunEndsTheOldOne();
    void missingUninstallerAfterAnEndedRun();
    void stopFromASignal_data();
    void stopFromASignal();
    void stopFromTheLastPoll();
    void newRunFromTheLastPoll();
    void stopAtAHundredPercent();
    void newRunAtAHundredPercent();
};

namespace {

constexpr int kLongestStop = 2000; ///< milliseconds
constexpr int kPatience = 10'000;

/// A run with a child process that is really there and that would stay for ever.
class EndlessRun
{
public:
    explicit EndlessRun(const QByteArray &scenario = {})
    {
        sandbox.setScenario("stall = forever\n" + scenario);
        engine->setSetupExecutable(Sandbox::setupEngine());
        engine->startInstall(sandbox.path(u"app"_s), {});
    }

    /// Waits until the process does what it was told, and returns its number.
    [[nodiscard]] qint64 processId() const
    {
        const auto isUnderWay = [this] {
            return QFile::exists(engine->logFilePath()) && QFile::exists(engine->statusFilePath());
        };
        const auto *process = engine->findChild<QProcess *>();
        return process && QTest::qWaitFor(isUnderWay, kPatience) ? process->processId() : 0;
    }

    Sandbox sandbox;
    std::unique_ptr<InstallerEngine> engine = std::make_unique<InstallerEngine>();
    EngineRecord record { *engine };
};

} // namespace

void TestInstallerEngineStop::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestInstallerEngineStop::stop_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::newRow("waiting") << QByteArray();
    QTest::newRow("deaf to requests") << QByteArray("ignore-termination = yes");
    QTest::newRow("with a child that holds the pipes") << QByteArray("hold-pipes = 5");
}

void TestInstallerEngineStop::stop()
{
    QFETCH(const QByteArray, scenario);
    EndlessRun run(scenario);
    const qint64 processId = run.processId();
    QVERIFY(processId > 0);
    QVERIFY(processExists(processId));
    run.record.told.clear();

    QElapsedTimer clock;
    clock.start();
    run.engine->stop();
    QVERIFY(clock.elapsed() < kLongestStop);
    QVERIFY(!processExists(processId));
    QCOMPARE(run.sandbox.tempFiles(), QStringList());
    QCOMPARE(run.engine->statusFilePath(), QString());
    QCOMPARE(run.engine->logFilePath(), QString());
    run.record.settle();
    QCOMPARE(run.record.told, QStringList());
    QTRY_VERIFY_WITH_TIMEOUT(run.engine->findChildren<QProcess *>().isEmpty(), kPatience);
}

void TestInstallerEngineStop::stopRightAfterTheStart()
{
    EndlessRun run;
    run.engine->stop();
    run.record.settle();
    QCOMPARE(run.record.told, QStringList());
    QCOMPARE(run.sandbox.tempFiles(), QStringList());
}

// As by the engine's second process, which is killed too but not waited for.
void TestInstallerEngineStop::logThatIsHeldForAMoment()
{
    if (!HeldFile::isPossible())
        QSKIP("Here a file that somebody holds can be removed");
    EndlessRun run;
    QVERIFY(run.processId() > 0);
    auto hold = std::make_unique<HeldFile>(run.engine->logFilePath());
    const std::unique_ptr<QThread> holder(QThread::create([&] {
        QThread::msleep(300);
        hold.reset();
    }));
    holder->start();
    run.engine->stop();
    QVERIFY(holder->wait());
    QCOMPARE(run.sandbox.tempFiles(), QStringList());
}

void TestInstallerEngineStop::stopTwice()
{
    EndlessRun run;
    QVERIFY(run.processId() > 0);
    run.engine->stop();
    run.engine->stop();
    run.engine->poll();
    run.record.settle();
    QVERIFY(run.record.successes.isEmpty());
    QCOMPARE(run.sandbox.tempFiles(), QStringList());
}

void TestInstallerEngineStop::stopAfterTheEnd()
{
    const Sandbox sandbox;
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.setSetupExecutable(Sandbox::setupEngine());
    engine.startInstall(sandbox.path(u"app"_s), {});
    QVERIFY(record.waitForEnd());
    QCOMPARE(sandbox.tempFiles().size(), 2);
    engine.stop();
    QCOMPARE(sandbox.tempFiles(), QStringList());
    QCOMPARE(engine.statusFilePath(), QString());
    QCOMPARE(engine.logFilePath(), QString());
    record.settle();
    QCOMPARE(record.successes, QList<bool> { true });
}

void TestInstallerEngineStop::runAfterAStop()
{
    EndlessRun run;
    QVERIFY(run.processId() > 0);
    run.engine->stop();
    run.sandbox.setScenario("");
    run.engine->startInstall(run.sandbox.path(u"app"_s), {});
    QVERIFY(run.record.waitForEnd());
    run.record.settle();
    QCOMPARE(run.record.successes, QList<bool> { true });
}

void TestInstallerEngineStop::destruction_data()
{
    stop_data();
}

void TestInstallerEngineStop::destruction()
{
    QFETCH(const QByteArray, scenario);
    EndlessRun run(scenario);
    const qint64 processId = run.processId();
    QVERIFY(processId > 0);
    QCOMPARE(run.sandbox.tempFiles().size(), 2);
    run.record.told.clear();

    QElapsedTimer clock;
    clock.start();
    run.engine.reset();
    QVERIFY(clock.elapsed() < kLongestStop);
    QVERIFY(!processExists(processId));
    QCOMPARE(run.sandbox.tempFiles(), QStringList());
    QCOMPARE(run.record.told, QStringList());
}

void TestInstallerEngineStop::destructionWithoutARun()
{
    const Sandbox sandbox;
    {
        InstallerEngine engine;
        engine.startInstall(sandbox.path(u"app"_s), {});
        engine.startUninstall(sandbox.path(u"missing.exe"_s));
    }
    QCOMPARE(sandbox.tempFiles(), QStringList());
}

void TestInstallerEngineStop::newRunEndsTheOldOne()
{
    EndlessRun run;
    const qint64 processId = run.processId();
    QVERIFY(processId > 0);
    run.record.told.clear();
    run.sandbox.setScenario("");
    run.engine->startInstall(run.sandbox.path(u"app"_s), {});
    QVERIFY(!processExists(processId));
    QCOMPARE(run.record.told, QStringList());
    QVERIFY(run.record.waitForEnd());
    run.record.settle();
    QCOMPARE(run.record.successes, QList<bool> { true });
    QCOMPARE(run.sandbox.tempFiles().size(), 2);
}

void TestInstallerEngineStop::missingUninstallerAfterAnEndedRun()
{
    const Sandbox sandbox;
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.setSetupExecutable(Sandbox::setupEngine());
    engine.startInstall(sandbox.path(u"app"_s), {});
    QVERIFY(record.waitForEnd());
    const QStringList before = sandbox.tempFiles();
    engine.startUninstall(sandbox.path(u"missing.exe"_s));
    QCOMPARE(record.errors.last(), u"The uninstaller could not be found."_s);
    QCOMPARE(sandbox.tempFiles(), before);
    QVERIFY(!engine.logFilePath().isEmpty());
}

void TestInstallerEngineStop::stopFromASignal_data()
{
    QTest::addColumn<QString>("signal");
    QTest::newRow("progress") << u"progress 0.25"_s;
    QTest::newRow("file of the status file") << u"file a"_s;
    QTest::newRow("status") << u"status c"_s;
    QTest::newRow("file of the log") << u"file b"_s;
}

// A stopped run has nothing more to say, be it in the middle of a poll.
void TestInstallerEngineStop::stopFromASignal()
{
    QFETCH(const QString, signal);
    EndlessRun run("stage = start\nlog-none = yes");
    const QString status = u"temp/"_s + QFileInfo(run.engine->statusFilePath()).fileName();
    run.sandbox.write(status, "progress=25\nfile=a\nstatus=c\n");
    run.sandbox.write(status + u".log", "x   Dest filename: b\r\n");
    const auto stopAtSignal = [&run, &signal] {
        if (run.record.told.last() == signal)
            run.engine->stop();
    };
    connect(run.engine.get(), &InstallerEngine::progress, this, stopAtSignal);
    connect(run.engine.get(), &InstallerEngine::currentFile, this, stopAtSignal);
    connect(run.engine.get(), &InstallerEngine::statusChanged, this, stopAtSignal);
    run.engine->poll();
    QCOMPARE(run.record.told.last(), signal);
    run.record.settle();
    QCOMPARE(run.record.told.last(), signal);
    QCOMPARE(run.sandbox.tempFiles(), QStringList());
}

void TestInstallerEngineStop::stopFromTheLastPoll()
{
    Sandbox sandbox;
    sandbox.setScenario("files = 1\nlog-none = yes\nprogress = 25\nfile = a\nstatus = b");
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.setSetupExecutable(Sandbox::setupEngine());
    connect(&engine, &InstallerEngine::statusChanged, &engine, &InstallerEngine::stop);
    engine.startInstall(sandbox.path(u"app"_s), {});
    QTRY_VERIFY_WITH_TIMEOUT(!record.statuses.isEmpty(), kPatience);
    record.settle();
    QCOMPARE(record.told.last(), u"status b"_s);
    QVERIFY(record.successes.isEmpty());
}

void TestInstallerEngineStop::newRunFromTheLastPoll()
{
    Sandbox sandbox;
    sandbox.setScenario("files = 1\nlog-none = yes\nprogress = 25\nstatus = first run");
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.setSetupExecutable(Sandbox::setupEngine());
    const QString folder = sandbox.path(u"app"_s);
    const auto startAnother = [&] {
        sandbox.setScenario("files = 1\nlog-none = yes\nexit-code = 2");
        engine.startInstall(folder, {});
    };
    connect(&engine, &InstallerEngine::statusChanged, this, startAnother, Qt::SingleShotConnection);
    engine.startInstall(folder, {});
    // The first run is cut short, so the second one's outcome is the only one.
    QVERIFY(record.waitForEnd());
    record.settle();
    QCOMPARE(record.errors, QStringList { u"Installation was cancelled."_s });
}

void TestInstallerEngineStop::stopAtAHundredPercent()
{
    Sandbox sandbox;
    sandbox.setScenario("finish-at-once = yes");
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.setSetupExecutable(Sandbox::setupEngine());
    connect(&engine, &InstallerEngine::progress, &engine, &InstallerEngine::stop);
    engine.startInstall(sandbox.path(u"app"_s), {});
    QTRY_VERIFY_WITH_TIMEOUT(!record.told.isEmpty(), kPatience);
    record.settle();
    QCOMPARE(record.told, QStringList { u"progress 1"_s });
}

void TestInstallerEngineStop::newRunAtAHundredPercent()
{
    Sandbox sandbox;
    sandbox.setScenario("finish-at-once = yes");
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.setSetupExecutable(Sandbox::setupEngine());
    const QString folder = sandbox.path(u"app"_s);
    const auto startAnother = [&] {
        sandbox.setScenario("finish-at-once = yes\nexit-code = 2");
        engine.startInstall(folder, {});
    };
    connect(&engine, &InstallerEngine::progress, this, startAnother, Qt::SingleShotConnection);
    engine.startInstall(folder, {});
    QVERIFY(record.waitForEnd());
    record.settle();
    const QStringList all { u"progress 1"_s, u"failed Installation was cancelled."_s };
    QCOMPARE(record.told, all);
}

QTEST_GUILESS_MAIN(TestInstallerEngineStop)
#include "tst_installerengine_stop.moc"
