#include "engine/enginescene.h"
#include "engine/process.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <chrono>
#include <memory>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

// A setup is often two processes: the one that was started, and one that does the work. Both belong
// to the run.
class TestInstallerEngineProcesses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void failureEndsAll_data();
    void failureEndsAll();
    void failedRemovalEndsAll();
    void errorOfALivingProcessEndsAll();
    void successWaitsForTheLastPart();
    void successDoesNotWaitForEver();
    void stopEndsAll();
    void stopWaitsForTheLastPart();
    void stopDoesNotWaitForEver();
    void killThatTakesAMoment_data();
    void killThatTakesAMoment();
    void killThatTakesTooLong_data();
    void killThatTakesTooLong();
    void fileThatIsHeldTooLong();
};

namespace {

constexpr int kPatience = 20'000; ///< milliseconds
const QStringList kDone { u"second process is done"_s };

/// The number of the engine's second process; 0 as long as there is none.
qint64 secondProcess(const Sandbox &sandbox)
{
    for (const QStringList &line : sandbox.engineRuns()) {
        if (line.first() == u"second process"_s)
            return line.at(1).toLongLong();
    }
    return 0;
}

/// Whether the second process was running when the run was told to have ended.
class EndWatch : public QObject
{
public:
    explicit EndWatch(const EngineScene &run)
    {
        connect(&run.engine, &InstallerEngine::finished, this, [this, &run] {
            process = secondProcess(run.sandbox);
            wasRunning = isRunning(process);
        });
    }

    qint64 process = 0;
    bool wasRunning = false;
};

/// A removal whose first process ends at once and well. The second goes on for some seconds.
struct Removal : EngineScene
{
    explicit Removal(double seconds)
        : EngineScene("finish-at-once = yes\nsecond-process = " + QByteArray::number(seconds))
    {
        const QString uninstaller = sandbox.path(u"unins000.exe"_s);
        if (!QFile::copy(Sandbox::setupEngine(), uninstaller))
            qFatal("Cannot make an uninstaller");
        engine.startUninstall(uninstaller);
        sandbox.write(u"temp/"_s + QFileInfo(engine.statusFilePath()).fileName(), "progress=50\n");
    }

    [[nodiscard]] bool waitForLastPart() const
    {
        const auto *process = engine.findChild<QProcess *>();
        return QTest::qWaitFor([&] { return process->state() == QProcess::NotRunning; }, kPatience);
    }
    [[nodiscard]] bool waitForSecondProcess() const
    {
        return QTest::qWaitFor([&] { return sandbox.engineRuns().last() == kDone; }, kPatience);
    }
};

/// An installation that hangs, with the number of its process.
struct HangingRun : EngineScene
{
    explicit HangingRun(const QByteArray &scenario = {})
        : EngineScene("stall = forever\nstage = half\n" + scenario)
    {
        start();
        const QString status = engine.statusFilePath();
        if (!QTest::qWaitFor([&] { return QFile::exists(status); }, kPatience))
            qFatal("The engine does not begin");
        process = engine.findChild<QProcess *>()->processId();
    }

    qint64 process = 0;
};

} // namespace

void TestInstallerEngineProcesses::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestInstallerEngineProcesses::failureEndsAll_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::newRow("crash") << QByteArray("crash = KILL");
    QTest::newRow("crash at the start") << QByteArray("crash = SEGV\nstage = start");
    QTest::newRow("exit code") << QByteArray("exit-code = 4\nstage = half");
}

void TestInstallerEngineProcesses::failureEndsAll()
{
    QFETCH(const QByteArray, scenario);
    EngineScene run("second-process = 60\n" + scenario);
    const EndWatch end(run);
    QVERIFY(run.toTheEnd());
    QCOMPARE(run.record.successes, QList<bool> { false });
    QVERIFY(end.process > 0);
    QVERIFY(!end.wasRunning);
    run.engine.stop();
    const QStringList left = run.sandbox.tempFiles();
    QVERIFY(left.isEmpty() || left == QStringList { u"varnel_setup_last.log"_s });
}

void TestInstallerEngineProcesses::failedRemovalEndsAll()
{
    EngineScene run("second-process = 60");
    const EndWatch end(run);
    const QString uninstaller = run.sandbox.path(u"unins000.exe"_s);
    QVERIFY(QFile::copy(Sandbox::setupEngine(), uninstaller));
    run.engine.startUninstall(uninstaller); // there is no list of what to remove
    QVERIFY(run.record.waitForEnd());
    QCOMPARE(run.record.errors, QStringList { u"Setup could not start."_s });
    QVERIFY(end.process > 0);
    QVERIFY(!end.wasRunning);
}

// Qt has errors that are no end, though none that this process should ever have.
void TestInstallerEngineProcesses::errorOfALivingProcessEndsAll()
{
    HangingRun run("second-process = 60");
    const EndWatch end(run);
    auto *process = run.engine.findChild<QProcess *>();
    Q_EMIT process->errorOccurred(QProcess::ReadError);
    QCOMPARE(run.record.errors, QStringList { process->errorString() });
    QVERIFY(end.process > 0);
    QVERIFY(!end.wasRunning);
    QVERIFY(!isRunning(run.process));
    run.record.settle();
    QCOMPARE(run.record.successes, QList<bool> { false });
}

// An uninstaller's second process removes the first one's executable and then itself.
void TestInstallerEngineProcesses::successWaitsForTheLastPart()
{
    Removal run(0.5);
    const EndWatch end(run);
    QVERIFY(run.record.waitForEnd());
    QCOMPARE(run.record.successes, QList<bool> { true });
    QVERIFY(end.process > 0);
    QVERIFY(!end.wasRunning);
    QCOMPARE(run.sandbox.engineRuns().last(), kDone); // so nobody has killed it
    QCOMPARE(run.record.statuses, QStringList { u"Second process"_s });
    const QStringList last { u"progress 1"_s, u"finished"_s };
    QCOMPARE(run.record.told.last(2), last);
}

// Nor is it killed then: it may be a program that setup has left there on purpose.
void TestInstallerEngineProcesses::successDoesNotWaitForEver()
{
    Removal run(8);
    const EndWatch end(run);
    QVERIFY(run.record.waitForEnd());
    QCOMPARE(run.record.successes, QList<bool> { true });
    QVERIFY(end.wasRunning);
    run.engine.stop();
    QVERIFY(isRunning(end.process));
    QVERIFY(run.waitForSecondProcess());
    QCOMPARE(run.sandbox.tempFiles(), QStringList());
    QCOMPARE(run.record.successes, QList<bool> { true });
}

void TestInstallerEngineProcesses::stopEndsAll()
{
    HangingRun run("second-process = 60");
    const qint64 second = secondProcess(run.sandbox);
    QVERIFY(isRunning(second));
    run.engine.stop();
    QVERIFY(!isRunning(run.process));
    QVERIFY(!isRunning(second));
    QCOMPARE(run.sandbox.tempFiles(), QStringList());
}

void TestInstallerEngineProcesses::stopWaitsForTheLastPart()
{
    Removal run(1);
    QVERIFY(run.waitForLastPart());
    run.record.told.clear();
    run.engine.stop();
    QVERIFY(!isRunning(secondProcess(run.sandbox)));
    QCOMPARE(run.sandbox.engineRuns().last(), kDone); // so nobody has killed it
    QCOMPARE(run.sandbox.tempFiles(), QStringList());
    run.record.settle();
    QCOMPARE(run.record.told, QStringList());
}

void TestInstallerEngineProcesses::stopDoesNotWaitForEver()
{
    Removal run(8);
    QVERIFY(run.waitForLastPart());
    run.engine.stop();
    QVERIFY(isRunning(secondProcess(run.sandbox)));
    QVERIFY(run.waitForSecondProcess());
    QCOMPARE(run.sandbox.tempFiles(), QStringList());
}

void TestInstallerEngineProcesses::killThatTakesAMoment_data()
{
    QTest::addColumn<bool>("isFailure");
    QTest::newRow("stop") << false;
    QTest::newRow("failure") << true;
}

void TestInstallerEngineProcesses::killThatTakesAMoment()
{
    if (!LateKill::isPossible())
        QSKIP("Here everybody dies at once");
    QFETCH(const bool, isFailure);
    HangingRun run("second-process = 60");
    const LateKill lateKill(300ms);
    if (isFailure)
        Q_EMIT run.engine.findChild<QProcess *>()->errorOccurred(QProcess::ReadError);
    else
        run.engine.stop();
    QVERIFY(!isRunning(run.process));
    QVERIFY(!isRunning(secondProcess(run.sandbox)));
}

void TestInstallerEngineProcesses::killThatTakesTooLong_data()
{
    QTest::addColumn<QByteArray>("end");
    QTest::newRow("stop") << QByteArray("stop");
    QTest::newRow("destruction") << QByteArray("destruction");
    QTest::newRow("failure") << QByteArray("failure");
}

// The window must not hang with it.
void TestInstallerEngineProcesses::killThatTakesTooLong()
{
    if (!LateKill::isPossible())
        QSKIP("Here everybody dies at once");
    QFETCH(const QByteArray, end);
    auto run = std::make_unique<HangingRun>();
    const qint64 process = run->process;
    const auto cleanUp = qScopeGuard([&] { endProcess(process); });
    const LateKill lateKill(10s);
    if (end == "failure")
        Q_EMIT run->engine.findChild<QProcess *>()->errorOccurred(QProcess::ReadError);
    else if (end == "stop")
        run->engine.stop();
    else
        run.reset();
    QVERIFY(isRunning(process));
    endProcess(process);
    QTRY_VERIFY_WITH_TIMEOUT(!processExists(process), kPatience);
}

void TestInstallerEngineProcesses::fileThatIsHeldTooLong()
{
    if (!HeldFile::isPossible())
        QSKIP("Here a file that somebody holds can be removed");
    HangingRun run;
    auto hold = std::make_unique<HeldFile>(run.engine.logFilePath());
    QSemaphore isStopped;
    bool wasStopped = false;
    const std::unique_ptr<QThread> holder(QThread::create([&] {
        wasStopped = isStopped.tryAcquire(1, 10'000);
        hold.reset();
    }));
    holder->start();
    run.engine.stop();
    isStopped.release();
    QVERIFY(holder->wait());
    QVERIFY(wasStopped);
}

QTEST_GUILESS_MAIN(TestInstallerEngineProcesses)
#include "tst_installerengine_processes.moc"
