#include "engine/enginescene.h"
#include "engine/process.h"
#include "engine/processtree.h"
#include "support/stricttest.h"

#include <QProcess>
#include <QScopeGuard>
#include <QTest>

#include <chrono>
#include <memory>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

// A setup is often two processes: the one that was started, and one that does the work. Both belong
// to the run.
class TestInstallerEngineProcesses : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void processIsInTheTreeFromItsStart();
    void failureEndsAll_data();
    void failureEndsAll();
    void successWaitsForTheLastPart();
    void successDoesNotWaitForEver();
    void stopWaitsForTheLastPart();
    void stopAndErrorEndAll();
    void killThatTakesTooLong();
};

namespace {

const QByteArray kSecondProcess = "second-process = 60\n";
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

/// Whether the second process was running when the run was reported as ended.
class EndWatch : public QObject
{
public:
    explicit EndWatch(const EngineScene &scene)
    {
        connect(&scene.engine, &InstallerEngine::finished, this, [this, &scene] {
            process = secondProcess(scene.sandbox);
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
        startRemoval();
        writeStatus("progress=50\n");
    }

    [[nodiscard]] bool waitForLastPart() const
    {
        const auto hasEnded = [this] { return process()->state() == QProcess::NotRunning; };
        return QTest::qWaitFor(hasEnded, kPatience);
    }
    [[nodiscard]] bool waitForSecondProcess() const
    {
        return QTest::qWaitFor([&] { return sandbox.engineRuns().last() == kDone; }, kPatience);
    }
};

} // namespace

// An engine that starts its second process at once, while this one has not come to attach() yet, as
// on a busy machine.
void TestInstallerEngineProcesses::processIsInTheTreeFromItsStart()
{
    EngineScene scene("second-process = 60\nstall = forever\nstage = start\n");
    QProcess process;
    ProcessTree tree(process);
    process.start(Sandbox::setupEngine(), { u"/DIR="_s + scene.sandbox.path(u"app"_s) });
    QVERIFY(process.waitForStarted(kPatience));
    QTest::qWait(1000);
    tree.attach();
    QTRY_VERIFY_WITH_TIMEOUT(secondProcess(scene.sandbox) > 0, kPatience);
    const qint64 second = secondProcess(scene.sandbox);
    QVERIFY(isRunning(second));
    QVERIFY(tree.isAlive());
    tree.kill();
    QVERIFY(process.waitForFinished(kPatience));
    QTRY_VERIFY_WITH_TIMEOUT(!isRunning(second), kPatience);
    QVERIFY(!tree.isAlive());
}

void TestInstallerEngineProcesses::failureEndsAll_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<bool>("isRemoval");
    QTest::newRow("crash") << QByteArray("crash = KILL") << false;
    QTest::newRow("exit code") << QByteArray("exit-code = 4\nstage = half") << false;
    QTest::newRow("exit code of a removal") << QByteArray() << true;
}

void TestInstallerEngineProcesses::failureEndsAll()
{
    QFETCH(const QByteArray, scenario);
    QFETCH(const bool, isRemoval);
    EngineScene scene(kSecondProcess + scenario);
    const EndWatch end(scene);
    if (isRemoval)
        scene.startRemoval();
    else
        scene.start();
    QVERIFY(scene.record.waitForEnd());
    QCOMPARE(scene.record.successes, QList<bool> { false });
    QVERIFY(end.process > 0);
    QVERIFY(!end.wasRunning);
    scene.engine.stop();
    const QStringList left = scene.sandbox.tempFiles();
    QVERIFY(left.isEmpty() || left == QStringList { u"varnel_setup_last.log"_s });
}

// An uninstaller's second process removes the first one's executable and then itself.
void TestInstallerEngineProcesses::successWaitsForTheLastPart()
{
    Removal scene(0.5);
    const EndWatch end(scene);
    QVERIFY(scene.record.waitForEnd());
    QCOMPARE(scene.record.successes, QList<bool> { true });
    QVERIFY(end.process > 0);
    QVERIFY(!end.wasRunning);
    QCOMPARE(scene.sandbox.engineRuns().last(), kDone); // so it was not killed
    QCOMPARE(scene.record.statuses, QStringList { u"Second process"_s });
    const QStringList last { u"progress 1"_s, u"finished"_s };
    QCOMPARE(scene.record.events.last(2), last);
}

// Nor is it killed then: it may be a program that setup has left running on purpose.
void TestInstallerEngineProcesses::successDoesNotWaitForEver()
{
    Removal scene(8);
    const EndWatch end(scene);
    QVERIFY(scene.record.waitForEnd());
    QCOMPARE(scene.record.successes, QList<bool> { true });
    QVERIFY(end.wasRunning);
    scene.engine.stop();
    QVERIFY(isRunning(end.process));
    QVERIFY(scene.waitForSecondProcess());
    QCOMPARE(scene.sandbox.tempFiles(), QStringList());
    QCOMPARE(scene.record.successes, QList<bool> { true });
}

void TestInstallerEngineProcesses::stopWaitsForTheLastPart()
{
    for (const bool isLong : { false, true }) {
        Removal scene(isLong ? 8 : 1);
        QVERIFY(scene.waitForLastPart());
        scene.record.events.clear();
        QElapsedTimer clock;
        clock.start();
        scene.engine.stop();
        QVERIFY2(clock.elapsed() < 5000, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(isRunning(secondProcess(scene.sandbox)), isLong);
        if (isLong)
            QVERIFY(scene.waitForSecondProcess());
        QCOMPARE(scene.sandbox.engineRuns().last(), kDone); // so it was not killed
        QCOMPARE(scene.sandbox.tempFiles(), QStringList());
        scene.record.settle();
        QCOMPARE(scene.record.events, QStringList());
    }
}

// Also where a kill takes a moment. Qt has errors that are no end, though none that this process
// should ever have.
void TestInstallerEngineProcesses::stopAndErrorEndAll()
{
    for (const bool isError : { false, true }) {
        HangingScene scene(kSecondProcess);
        const qint64 second = secondProcess(scene.sandbox);
        QVERIFY(isRunning(second));
        const EndWatch end(scene);
        const LateKill lateKill(300ms);
        QStringList errors;
        if (isError) {
            Q_EMIT scene.process()->errorOccurred(QProcess::ReadError);
            errors << scene.process()->errorString();
        } else {
            scene.engine.stop();
            QCOMPARE(scene.sandbox.tempFiles(), QStringList());
        }
        QVERIFY(!end.wasRunning);
        QVERIFY(!isRunning(scene.processId));
        QVERIFY(!isRunning(second));
        scene.record.settle();
        QCOMPARE(scene.record.errors, errors);
    }
}

// The window must not hang with it.
void TestInstallerEngineProcesses::killThatTakesTooLong()
{
#ifdef Q_OS_WIN
    QSKIP("Here a kill cannot be delayed");
#endif
    for (const QString &end : { u"failure"_s, u"stop"_s, u"destruction"_s }) {
        HangingScene scene;
        const qint64 process = scene.processId;
        const auto cleanUp = qScopeGuard([&] { endProcess(process); });
        const LateKill lateKill(10s);
        QElapsedTimer clock;
        clock.start();
        if (end == u"failure")
            Q_EMIT scene.process()->errorOccurred(QProcess::ReadError);
        else if (end == u"stop")
            scene.engine.stop();
        else
            scene.owner.reset();
        // Two seconds, of which the machine may make some more.
        QVERIFY2(clock.elapsed() >= 1900 && clock.elapsed() < 4000, qPrintable(end));
        QVERIFY(isRunning(process));
        endProcess(process);
        QTRY_VERIFY_WITH_TIMEOUT(!processExists(process), kPatience);
    }
}

QTEST_GUILESS_MAIN(TestInstallerEngineProcesses)
#include "tst_installerengine_processes.moc"
