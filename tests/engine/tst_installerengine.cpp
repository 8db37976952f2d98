#include "engine/enginerun.h"
#include "engine/enginescene.h"
#include "engine/process.h"
#include "support/stricttest.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSemaphore>
#include <QTest>
#include <QThread>

using namespace Qt::Literals::StringLiterals;

// Runs that go well, and runs that are stopped or replaced, from outside and from within the
// engine's own signals. The child process is a real one.
class TestInstallerEngine : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void install();
    void folderAndTasks();
    void relativePathWithBlanks();
    void secondRunStartsAnew();
    void removalFromTheFinishedSignal();
    void filesOfItsNamesGo();
    void hangingRun_data();
    void hangingRun();
    void stopBeforeAndAfterTheRun();
    void heldLog();
    void stopFromASignal();
    void stopFromTheLastPollOfAFailure();
    void answerToTheLastSignals_data();
    void answerToTheLastSignals();
};

namespace {

QString native(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

/// "name" and "name.log".
QStringList filesOf(const QString &statusFile)
{
    const QString name = QFileInfo(statusFile).fileName();
    return { name, name + u".log"_s };
}

const QStringList kEnd { u"progress 1"_s, u"finished"_s };

} // namespace

void TestInstallerEngine::install()
{
    // What the log says counts only after a failure.
    EngineScene scene("log-line = An error: it failed.\nmessage-box = Disk full.");
    const QString folder = scene.sandbox.path(u"Varnel Schematics"_s);
    scene.sandbox.write(u"temp/varnel_setup_00000000000000000000000000000000.ini"_s, "");
    const QStringList filesOfOthers = scene.sandbox.tempFiles();

    scene.engine.startInstall(folder, { u"desktopicon"_s });
    const QString status = scene.engine.statusFilePath();
    static const QRegularExpression name(u"^varnel_setup_[0-9a-f]{32}\\.ini$"_s);
    QVERIFY2(name.match(QFileInfo(status).fileName()).hasMatch(), qPrintable(status));
    QCOMPARE(QFileInfo(status).path(), QDir::fromNativeSeparators(scene.sandbox.tempFolder()));
    QCOMPARE(scene.engine.logFilePath(), status + u".log");
    QVERIFY(scene.record.events.isEmpty());
    QVERIFY(scene.record.waitForEnd());
    scene.record.settle();

    QCOMPARE(scene.record.events.last(2), kEnd);
    QCOMPARE(scene.record.errors, QStringList { QString() });
    QVERIFY(QFile::exists(folder + u"/VarnelSolutions.exe"));
    QVERIFY(QFile::exists(folder + u"/unins000.exe"));
    // The last file that the log names, so it is reported however few polls there were.
    const QStringList shortcuts = QDir(scene.sandbox.path(u"desktop"_s)).entryList(QDir::Files);
    QCOMPARE(shortcuts.size(), 1);
    QVERIFY(
        scene.record.files.contains(native(scene.sandbox.path(u"desktop/"_s + shortcuts.first()))));
    QCOMPARE(scene.record.statuses.last(), u"Creating shortcuts\u2026"_s);
    QCOMPARE(scene.engine.lastLogPath(), QString());

    // The files of an ended run stay as long as the engine.
    QCOMPARE(scene.engine.statusFilePath(), status);
    QCOMPARE(scene.sandbox.tempFiles(), filesOfOthers + filesOf(status));
    scene.owner.reset();
    QCOMPARE(scene.sandbox.tempFiles(), filesOfOthers);
}

// As the child process has received them.
void TestInstallerEngine::folderAndTasks()
{
    EngineScene scene("finish-at-once = yes");
    scene.engine.startInstall(u"C:/"_s, { u"desktopicon"_s, u"b"_s });
    QVERIFY(scene.record.waitForEnd());
    QCOMPARE(scene.record.events, kEnd); // although it has reported nothing
    const QList<QStringList> runs = scene.sandbox.engineRuns();
    QCOMPARE(runs.size(), 1);
    const QStringList expected { u"/DIR="_s + native(u"C:/Varnel Schematics"_s),
                                 u"/TASKS=desktopicon,b"_s };
    QCOMPARE(runs.first().mid(4, 2), expected);
}

// A bare name means the file in the current folder, not the first of this name in the search path.
void TestInstallerEngine::relativePathWithBlanks()
{
    EngineScene scene;
    const QString before = QDir::currentPath();
    const auto goBack = qScopeGuard([&] { QDir::setCurrent(before); });
    const QString downloads = scene.sandbox.path(u"My Downloads %1"_s);
    QVERIFY(QDir().mkpath(downloads));
    QVERIFY(QFile::copy(Sandbox::setupEngine(), downloads + u"/varnel setup.exe"));
    QVERIFY(QDir::setCurrent(downloads));
    const QString target = scene.sandbox.path(u"a %2 b %1"_s);
    scene.engine.setSetupExecutable(u"varnel setup.exe"_s);
    scene.engine.startInstall(target, {});
    QVERIFY(scene.record.waitForEnd(1));
    QVERIFY(QDir::setCurrent(target));
    scene.engine.startUninstall(u"unins000.exe"_s);
    QVERIFY(scene.record.waitForEnd(2));
    const QStringList noErrors { QString(), QString() };
    QCOMPARE(scene.record.errors, noErrors);
}

void TestInstallerEngine::secondRunStartsAnew()
{
    EngineScene scene("progress = 60\nfile = one file\nstatus = one status\nlog-none = yes");
    QString firstStatus;
    for (int run = 1; run <= 2; ++run) {
        EngineRecord record(scene.engine);
        scene.start();
        const QString status = scene.engine.statusFilePath();
        QVERIFY(status != firstStatus);
        QVERIFY(record.waitForEnd());
        record.settle();
        // What the first run has reported does not keep the second from reporting the same.
        QVERIFY(record.fractions.contains(0.6));
        QCOMPARE(record.files.last(), u"one file"_s);
        QCOMPARE(record.statuses.last(), u"one status"_s);
        QCOMPARE(record.events.last(2), kEnd);
        QCOMPARE(scene.sandbox.tempFiles(), filesOf(status).first(1));
        firstStatus = status;
    }
}

void TestInstallerEngine::removalFromTheFinishedSignal()
{
    EngineScene scene;
    const QString folder = scene.sandbox.path(u"app %1"_s);
    const QString uninstaller = folder + u"/unins000.exe";
    scene.engine.startInstall(folder, { u"desktopicon"_s });
    scene.engine.setSetupExecutable({}); // which a removal does not need
    const auto remove = [&] { scene.engine.startUninstall(uninstaller); };
    connect(&scene.engine, &InstallerEngine::finished, this, remove, Qt::SingleShotConnection);
    QVERIFY(scene.record.waitForEnd(1));
    const QString status = scene.engine.statusFilePath();
    static const QRegularExpression name(u"^varnel_uninst_[0-9a-f]{32}\\.ini$"_s);
    QVERIFY2(name.match(QFileInfo(status).fileName()).hasMatch(), qPrintable(status));
    QCOMPARE(QFileInfo(status).path(), QDir::fromNativeSeparators(scene.sandbox.tempFolder()));
    QCOMPARE(scene.engine.logFilePath(), QString());
    QVERIFY(scene.record.waitForEnd(2));
    scene.record.settle();

    const QStringList noErrors { QString(), QString() };
    QCOMPARE(scene.record.errors, noErrors);
    QCOMPARE(scene.record.events.last(2), kEnd);
    QCOMPARE(scene.record.statuses.last(), u"Unregistering file types\u2026"_s);
    QVERIFY(!QFile::exists(folder));
    QCOMPARE(scene.sandbox.tempFiles(), filesOf(status).first(1));
    QCOMPARE(scene.sandbox.engineRuns().last().first(), native(uninstaller));
}

// They would be taken for what the run reports.
void TestInstallerEngine::filesOfItsNamesGo()
{
    const Sandbox sandbox;
    const QString status = sandbox.write(u"temp/a.ini"_s, "progress=99\n");
    const QString log = sandbox.write(u"temp/a.ini.log"_s, "x   Dest filename: b\n");
    const EngineRun run(status, log, nullptr);
    QCOMPARE(sandbox.tempFiles(), QStringList());
}

void TestInstallerEngine::hangingRun_data()
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

void TestInstallerEngine::hangingRun()
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

void TestInstallerEngine::stopBeforeAndAfterTheRun()
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
void TestInstallerEngine::heldLog()
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
void TestInstallerEngine::stopFromASignal()
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

void TestInstallerEngine::stopFromTheLastPollOfAFailure()
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

void TestInstallerEngine::answerToTheLastSignals_data()
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

void TestInstallerEngine::answerToTheLastSignals()
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

QTEST_GUILESS_MAIN(TestInstallerEngine)
#include "tst_installerengine.moc"
