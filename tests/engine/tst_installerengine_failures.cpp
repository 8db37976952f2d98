#include "engine/bracketlanguage.h"
#include "engine/enginescene.h"
#include "engine/process.h"
#include "support/stricttest.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <filesystem>

using namespace Qt::Literals::StringLiterals;

// Runs that are refused, cannot start, crash, misbehave or end with an exit code; and what becomes
// of the log of the latter.
class TestInstallerEngineFailures : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void refused_data();
    void refused();
    void retryFromTheFinishedSignal_data();
    void retryFromTheFinishedSignal();
    void crash_data();
    void crash();
    void crashWithoutACode();
    void lastReportOfAFailure();
    void output();
    void noReason_data();
    void noReason();
    void reasonAndKeptLog();
    void somethingInPlaceOfTheKeptLog();
};

namespace {

const QByteArray kOldLog = "of an earlier day";
const QString kKeptLog = u"temp/varnel_setup_last.log"_s;

/// The error text of a process object of the test's own for `program`.
QString processErrorText(const QString &program)
{
    QProcess process;
    process.setProgram(program);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start();
    process.waitForFinished();
    return process.errorString();
}

/// The message of exit code 4.
QString fatalError(const QString &reason, const QString &log)
{
    return u"A fatal error occurred during installation.  %1  (log: %2)"_s.arg(
        reason, QDir::toNativeSeparators(log));
}

} // namespace

void TestInstallerEngineFailures::refused_data()
{
    QTest::addColumn<bool>("isRemoval");
    QTest::addColumn<bool>("hasEngine");
    QTest::addColumn<QString>("path"); // below the sandbox, unless it is empty
    QTest::addColumn<QString>("error");
    const QString noEngine = u"No setup engine was supplied."_s;
    const QString quote = u"Setup cannot install into a folder whose name has a double quote."_s;
    const QString noUninstaller = u"The uninstaller could not be found."_s;
    QTest::newRow("no setup engine") << false << false << u"app"_s << noEngine;
    QTest::newRow("folder with a double quote") << false << true << u"a\""_s << quote;
    QTest::newRow("empty path of an uninstaller") << true << true << u""_s << noUninstaller;
    QTest::newRow("missing uninstaller") << true << true << u"unins000.exe"_s << noUninstaller;
    QTest::newRow("folder as an uninstaller") << true << true << u"temp"_s << noUninstaller;
}

void TestInstallerEngineFailures::refused()
{
    QFETCH(const bool, isRemoval);
    QFETCH(const bool, hasEngine);
    QFETCH(const QString, path);
    QFETCH(const QString, error);
    EngineScene scene;
    const auto tryIt = [&] {
        scene.engine.setSetupExecutable(hasEngine ? Sandbox::setupEngine() : QString());
        const QString fullPath = path.isEmpty() ? path : scene.sandbox.path(path);
        if (isRemoval)
            scene.engine.startUninstall(fullPath);
        else
            scene.engine.startInstall(fullPath, {});
        scene.engine.setSetupExecutable(Sandbox::setupEngine());
    };
    tryIt();
    QCOMPARE(scene.record.events, QStringList { u"failed "_s + error });
    QVERIFY(scene.engine.findChildren<QProcess *>().isEmpty());
    QCOMPARE(scene.engine.statusFilePath(), QString());
    QCOMPARE(scene.sandbox.tempFiles(), QStringList());

    // A run that is under way goes on.
    scene.start();
    const QString status = scene.engine.statusFilePath();
    tryIt();
    QCOMPARE(scene.record.errors.last(), error);
    QCOMPARE(scene.engine.statusFilePath(), status);
    QVERIFY(scene.record.waitForEnd(3));
    scene.record.settle();
    QCOMPARE(scene.record.events.last(), u"finished"_s);

    // One that has ended keeps its files.
    BracketLanguage language;
    QVERIFY(QCoreApplication::installTranslator(&language));
    tryIt();
    QCOMPARE(scene.record.errors.last(), u'[' + error + u']');
    QCOMPARE(scene.engine.statusFilePath(), status);
    QVERIFY(QFile::exists(status));
    QCOMPARE(scene.sandbox.engineRuns().size(), 1);
}

void TestInstallerEngineFailures::retryFromTheFinishedSignal_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<QString>("program"); // in the sandbox; empty: one that can start
    QTest::newRow("exit code") << QByteArray("exit-code = 4") << u""_s;
    QTest::newRow("crash") << QByteArray("crash = SEGV") << u""_s;
    QTest::newRow("missing") << QByteArray() << u"missing %1/setup.exe"_s;
    QTest::newRow("not executable") << QByteArray() << u"text.exe"_s;
    QTest::newRow("not a program") << QByteArray() << u"rubbish.exe"_s;
    QTest::newRow("folder") << QByteArray() << u"folder"_s;
}

void TestInstallerEngineFailures::retryFromTheFinishedSignal()
{
    QFETCH(const QByteArray, scenario);
    QFETCH(const QString, program);
    EngineScene scene(scenario);
    scene.sandbox.write(u"text.exe"_s, "No program.");
    QFile rubbish(scene.sandbox.write(u"rubbish.exe"_s, QByteArray(1000, '\x01')));
    QVERIFY(rubbish.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY(QDir().mkpath(scene.sandbox.path(u"folder"_s)));

    if (!program.isEmpty())
        scene.engine.setSetupExecutable(scene.sandbox.path(program));
    const auto retry = [&scene] {
        scene.sandbox.setScenario("");
        scene.engine.setSetupExecutable(Sandbox::setupEngine());
        scene.start();
    };
    connect(&scene.engine, &InstallerEngine::finished, this, retry, Qt::SingleShotConnection);
    QVERIFY(scene.toTheEnd(2));
    const QList<bool> outcomes { false, true };
    QCOMPARE(scene.record.successes, outcomes);
    QCOMPARE(scene.record.events.last(), u"finished"_s);
    if (!program.isEmpty()) {
        const QString error = processErrorText(scene.sandbox.path(program));
        QVERIFY(!error.isEmpty());
        QCOMPARE(scene.record.events.first(), u"failed "_s + error);
        QCOMPARE(scene.engine.lastLogPath(), QString());
    }
}

void TestInstallerEngineFailures::crash_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<double>("lastFraction"); // as the status file had it; 0 if there was none
    // 24 of 54 steps.
    QTest::newRow("segmentation fault, half way") << QByteArray("crash = SEGV") << 0.444;
    QTest::newRow("before the first status")
        << QByteArray("crash = SEGV\nstage = before-status") << 0.0;
    QTest::newRow("killed, when all is done") << QByteArray("crash = KILL\nstage = end") << 1.0;
}

void TestInstallerEngineFailures::crash()
{
    QFETCH(const QByteArray, scenario);
    QFETCH(const double, lastFraction);
    EngineScene scene(scenario + "\nmessage-box = Disk full.");
    scene.sandbox.write(kKeptLog, kOldLog);
    const QString error = processErrorText(Sandbox::setupEngine());
    QVERIFY(!error.isEmpty());
    QVERIFY(scene.toTheEnd());
    QCOMPARE(scene.record.errors, QStringList { error });
    QCOMPARE(scene.record.successes, QList<bool> { false });
    QCOMPARE(scene.record.fractions.isEmpty() ? 0.0 : scene.record.fractions.last(), lastFraction);
    // There is a log, but it is not kept.
    QVERIFY(QFile::exists(scene.engine.logFilePath()));
    QCOMPARE(scene.engine.lastLogPath(), QString());
    QCOMPARE(scene.keptText(), kOldLog);
}

// No system of today reports a crash like that, so the test does.
void TestInstallerEngineFailures::crashWithoutACode()
{
    HangingScene scene("log-line = Error 7 of the disk.");
    Q_EMIT scene.process()->finished(0, QProcess::CrashExit);
    QCOMPARE(scene.record.successes, QList<bool> { false });
    const QString error = scene.record.errors.first();
    QVERIFY2(error.startsWith(u"Setup exited with code 0.  "_s), qPrintable(error));
    QVERIFY2(error.contains(u"Error 7 of the disk."_s), qPrintable(error));
}

void TestInstallerEngineFailures::lastReportOfAFailure()
{
    EngineScene scene("exit-code = 2\nlog-none = yes\nprogress = 37.5\nfile = /x y/\xC3\xA4 %1.z\n"
                      "status = <b>Words</b> \xE2\x80\x94 here\n"
                      "status-style = bom, crlf, blanks, upper-section, no-final-newline");
    QVERIFY(scene.toTheEnd());
    const QStringList all { u"progress 0.375"_s, u"file /x y/\u00e4 %1.z"_s,
                            u"status <b>Words</b> \u2014 here"_s,
                            u"failed Installation was cancelled."_s };
    QCOMPARE(scene.record.events, all);
}

// Nothing of what the engine prints is kept in memory, and a process that it leaves behind with its
// pipes open is not waited for.
void TestInstallerEngineFailures::output()
{
    EngineScene scene("flood-stdout = 64M\nhold-pipes = 30");
    const qint64 before = peakMemory();
    QElapsedTimer clock;
    clock.start();
    QVERIFY(scene.toTheEnd());
    QVERIFY(clock.elapsed() < 15'000);
    QCOMPARE(scene.record.errors, QStringList { QString() });
    if (before < 0)
        QSKIP("memory cannot be judged");
    QVERIFY(peakMemory() - before < 8 << 20);
}

void TestInstallerEngineFailures::noReason_data()
{
    QTest::addColumn<QByteArray>("log"); // null: none
    QTest::addColumn<bool>("isFolderThere");
    QTest::newRow("no log") << QByteArray() << false;
    QTest::newRow("a folder in its place") << QByteArray() << true;
    QTest::newRow("empty log") << QByteArray("") << false;
    QTest::newRow("log without text")
        << QByteArray("\xEF\xBB\xBF\r\n   \r\n2026 Suppressed message box\r\n") << false;
}

void TestInstallerEngineFailures::noReason()
{
    QFETCH(const QByteArray, log);
    QFETCH(const bool, isFolderThere);
    EngineScene scene("exit-code = 255\nlog-none = yes");
    scene.sandbox.write(kKeptLog, kOldLog);
    scene.start();
    if (isFolderThere)
        QVERIFY(QDir().mkpath(scene.engine.logFilePath()));
    if (!log.isNull())
        scene.writeLog(log);
    QVERIFY(scene.record.waitForEnd());
    const QString kept = QDir::toNativeSeparators(scene.keptLog());
    const QString detail = log.isNull() ? QString() : u"  Log: "_s + kept;
    QCOMPARE(scene.record.errors, QStringList { u"Setup exited with code 255."_s + detail });
    QCOMPARE(scene.engine.lastLogPath(), log.isNull() ? QString() : scene.keptLog());
    QCOMPARE(scene.keptText(), log.isNull() ? kOldLog : log);
}

void TestInstallerEngineFailures::reasonAndKeptLog()
{
    EngineScene scene("exit-code = 4\nmessage-box = no" + QByteArray(1, '\0')
                      + "thing of <b>%2</b> & %L1");
    scene.sandbox.write(kKeptLog, QByteArray(100'000, 'x'));
    QVERIFY(scene.toTheEnd(1));
    QCOMPARE(scene.record.errors,
             QStringList { fatalError(u"nothing of <b>%2</b> & %L1"_s, scene.keptLog()) });
    // All was done and reported before; after a failure nothing more comes.
    QCOMPARE(scene.record.events.last(), u"failed "_s + scene.record.errors.first());
    QCOMPARE(scene.record.fractions.count(1.0), 1);
    QFile log(scene.engine.logFilePath());
    QVERIFY(log.open(QIODevice::ReadOnly));
    const QByteArray text = log.readAll();
    log.close();
    QVERIFY(text.contains("<b>%2</b>") && text.contains("Log closed."));
    QCOMPARE(scene.keptText(), text);

    scene.sandbox.setScenario("exit-code = 4\nlog-line = second run\nmessage-box = two");
    QVERIFY(scene.toTheEnd(2));
    QVERIFY(!scene.keptText().contains("<b>%2</b>"));
    QCOMPARE(scene.record.errors.last(), fatalError(u"two"_s, scene.keptLog()));

    // A run that goes well leaves it alone, and so does a removal, which has no log.
    scene.sandbox.setScenario("");
    QVERIFY(scene.toTheEnd(3));
    QVERIFY(scene.record.successes.last());
    scene.startRemoval();
    QVERIFY(scene.record.waitForEnd(4));
    QCOMPARE(scene.record.errors.last(), u"Setup could not start."_s);
    QVERIFY(scene.keptText().contains("second run"));
    scene.engine.stop();
    QCOMPARE(scene.engine.lastLogPath(), scene.keptLog());
    scene.owner.reset();
    QCOMPARE(scene.sandbox.tempFiles(), QStringList { u"varnel_setup_last.log"_s });
}

void TestInstallerEngineFailures::somethingInPlaceOfTheKeptLog()
{
    EngineScene scene("exit-code = 4\nmessage-box = Full.");
    QVERIFY(QDir().mkpath(scene.keptLog() + u"/folder"));
    QVERIFY(scene.toTheEnd());
    QCOMPARE(scene.record.errors, QStringList { fatalError(u"Full."_s, scene.keptLog()) });
    QCOMPARE(scene.engine.lastLogPath(), scene.keptLog());
    QVERIFY(QDir(scene.keptLog()).removeRecursively());

    const QString mine = scene.sandbox.write(u"mine.txt"_s, "mine");
    std::error_code error;
    std::filesystem::create_symlink(mine.toStdU16String(), scene.keptLog().toStdU16String(), error);
    if (error)
        QSKIP("no links here");
    QVERIFY(scene.toTheEnd(2));
    QCOMPARE(scene.sandbox.read(u"mine.txt"_s), "mine");
    QVERIFY(!QFileInfo(scene.keptLog()).isSymbolicLink());
    QVERIFY(scene.keptText().contains("Full."));
}

QTEST_GUILESS_MAIN(TestInstallerEngineFailures)
#include "tst_installerengine_failures.moc"
