#include "engine/bracketlanguage.h"
#include "engine/enginescene.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Runs that fail: in starting, and by an exit code.
class TestInstallerEngineFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void noSetupEngine();
    void noSetupEngineDuringARun();
    void folderWithADoubleQuote_data();
    void folderWithADoubleQuote();
    void programThatCannotStart_data();
    void programThatCannotStart();
    void noUninstaller_data();
    void noUninstaller();
    void noUninstallerDuringARun();
    void sentencesAreTranslated();
    void exitCode_data();
    void exitCode();
    void exitCodeOfAnUninstaller_data();
    void exitCodeOfAnUninstaller();
    void uninstallerHasNoDetailAfterAFailedInstall();
    void retryFromTheFinishedSignal_data();
    void retryFromTheFinishedSignal();
};

namespace {

const QString kSpace = u"There is not enough space on the disk."_s;

QString withLog(const QString &sentence, const QString &reason, const QString &log)
{
    return sentence + u"  "_s + reason + u"  (log: "_s + QDir::toNativeSeparators(log) + u')';
}

void addExitCodes()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("1") << 1 << u"Setup could not start."_s;
    QTest::newRow("2") << 2 << u"Installation was cancelled."_s;
    QTest::newRow("3") << 3 << u"Setup failed while preparing to install."_s;
    QTest::newRow("4") << 4 << u"A fatal error occurred during installation."_s;
    QTest::newRow("5") << 5 << u"Installation was cancelled during setup."_s;
    QTest::newRow("6") << 6 << u"Setup was stopped by a debugger."_s;
    QTest::newRow("7") << 7 << u"Setup cannot install on this system."_s;
    QTest::newRow("8") << 8 << u"A restart is required before setup can continue."_s;
    QTest::newRow("9") << 9 << u"Setup exited with code 9."_s;
    QTest::newRow("255") << 255 << u"Setup exited with code 255."_s;
}

} // namespace

void TestInstallerEngineFailures::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestInstallerEngineFailures::noSetupEngine()
{
    const Sandbox sandbox;
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.startInstall(sandbox.path(u"app"_s), {});
    QCOMPARE(record.told, QStringList { u"failed No setup engine was supplied."_s });
    record.settle();
    QCOMPARE(record.told.size(), 1);
    QVERIFY(engine.findChildren<QProcess *>().isEmpty());
    QCOMPARE(engine.statusFilePath(), QString());
    QCOMPARE(sandbox.tempFiles(), QStringList());
}

void TestInstallerEngineFailures::noSetupEngineDuringARun()
{
    EngineScene run("");
    run.start();
    const QString status = run.engine.statusFilePath();
    run.engine.setSetupExecutable({});
    run.start();
    QCOMPARE(run.record.told, QStringList { u"failed No setup engine was supplied."_s });
    // The run under way goes on as if nothing had been asked for.
    QCOMPARE(run.engine.statusFilePath(), status);
    QVERIFY(run.record.waitForEnd(2));
    run.record.settle();
    const QList<bool> outcomes { false, true };
    QCOMPARE(run.record.successes, outcomes);
    QVERIFY(QFile::exists(status));
}

void TestInstallerEngineFailures::folderWithADoubleQuote_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("in its name") << u"/opt/a\"b"_s;
    QTest::newRow("at its end") << u"/opt/a\""_s;
    QTest::newRow("another switch behind it") << u"/opt/a\" /LOG=\"/tmp/x"_s;
    QTest::newRow("in a folder above it") << u"/opt\"/a/b"_s;
}

// Nothing may be started with arguments that say something else than was meant.
void TestInstallerEngineFailures::folderWithADoubleQuote()
{
    QFETCH(const QString, folder);
    EngineScene run("finish-at-once = yes");
    run.start();
    const QString status = run.engine.statusFilePath();
    run.engine.startInstall(folder, {});
    QCOMPARE(run.record.told,
             QStringList {
                 u"failed Setup cannot install into a folder whose name has a double quote."_s });
    // The run under way goes on.
    QCOMPARE(run.engine.statusFilePath(), status);
    QVERIFY(run.record.waitForEnd(2));
    QCOMPARE(run.record.told.last(), u"finished"_s);
    QCOMPARE(run.sandbox.engineRuns().size(), 1);
}

void TestInstallerEngineFailures::programThatCannotStart_data()
{
    QTest::addColumn<QString>("program");
    QTest::newRow("missing") << u"missing/setup.exe"_s;
    QTest::newRow("not executable") << u"text.exe"_s;
    QTest::newRow("not a program") << u"rubbish.exe"_s;
    QTest::newRow("folder") << u"folder"_s;
    QTest::newRow("place marker in its name") << u"missing %1 %2.exe"_s;
}

void TestInstallerEngineFailures::programThatCannotStart()
{
    QFETCH(const QString, program);
    EngineScene run("");
    run.sandbox.write(u"text.exe"_s, "No program.");
    QFile rubbish(run.sandbox.write(u"rubbish.exe"_s, QByteArray(1000, '\x01')));
    QVERIFY(rubbish.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY(QDir().mkpath(run.sandbox.path(u"folder"_s)));

    const QString path = run.sandbox.path(program);
    const QString errorText = processErrorText(path);
    QVERIFY(!errorText.isEmpty());
    run.engine.setSetupExecutable(path);
    QVERIFY(run.toTheEnd());
    QCOMPARE(run.record.told, QStringList { u"failed "_s + errorText });
    QCOMPARE(run.engine.lastLogPath(), QString());
    QCOMPARE(run.sandbox.tempFiles(), QStringList());

    // The object is none the worse for it.
    run.engine.setSetupExecutable(Sandbox::setupEngine());
    QVERIFY(run.toTheEnd(2));
    QCOMPARE(run.record.told.last(), u"finished"_s);
}

void TestInstallerEngineFailures::noUninstaller_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("empty") << QString();
    QTest::newRow("missing") << u"unins000.exe"_s;
    QTest::newRow("folder") << u"temp"_s;
}

void TestInstallerEngineFailures::noUninstaller()
{
    QFETCH(const QString, path);
    EngineScene run("");
    run.engine.startUninstall(path.isEmpty() ? path : run.sandbox.path(path));
    QCOMPARE(run.record.told, QStringList { u"failed The uninstaller could not be found."_s });
    run.record.settle();
    QCOMPARE(run.record.told.size(), 1);
    QVERIFY(run.engine.findChildren<QProcess *>().isEmpty());
    QCOMPARE(run.engine.statusFilePath(), QString());
    QCOMPARE(run.sandbox.tempFiles(), QStringList());
}

void TestInstallerEngineFailures::noUninstallerDuringARun()
{
    EngineScene run("");
    run.start();
    const QString status = run.engine.statusFilePath();
    run.engine.startUninstall(run.sandbox.path(u"missing.exe"_s));
    QCOMPARE(run.record.told, QStringList { u"failed The uninstaller could not be found."_s });
    QCOMPARE(run.engine.statusFilePath(), status);
    QVERIFY(run.record.waitForEnd(2));
    QCOMPARE(run.record.told.last(), u"finished"_s);
}

void TestInstallerEngineFailures::sentencesAreTranslated()
{
    BracketLanguage language;
    QVERIFY(QCoreApplication::installTranslator(&language));
    EngineScene run("finish-at-once = yes\nexit-code = 9");
    run.engine.startUninstall({});
    QCOMPARE(run.record.errors.last(), u"[The uninstaller could not be found.]"_s);
    QVERIFY(run.toTheEnd(2));
    QCOMPARE(run.record.errors.last(), u"[Setup exited with code 9.]"_s);
    run.engine.startInstall(u"\""_s, {});
    QCOMPARE(run.record.errors.last(),
             u"[Setup cannot install into a folder whose name has a double quote.]"_s);
    run.engine.setSetupExecutable({});
    run.start();
    QCOMPARE(run.record.errors.last(), u"[No setup engine was supplied.]"_s);
}

void TestInstallerEngineFailures::exitCode_data()
{
    addExitCodes();
}

void TestInstallerEngineFailures::exitCode()
{
    QFETCH(const int, code);
    QFETCH(const QString, sentence);
    const QByteArray exit = "exit-code = " + QByteArray::number(code) + '\n';
    {
        EngineScene run(exit + "message-box = " + kSpace.toUtf8());
        QVERIFY(run.toTheEnd());
        QCOMPARE(run.record.errors, QStringList { withLog(sentence, kSpace, run.keptLog()) });
        QCOMPARE(run.record.successes, QList<bool> { false });
        QCOMPARE(run.engine.lastLogPath(), run.keptLog());
        // All was done and told before; a failed run tells nothing more.
        QCOMPARE(run.record.told.last(), u"failed "_s + run.record.errors.first());
        QCOMPARE(run.record.fractions.count(1.0), 1);
    }
    {
        EngineScene run(exit + "finish-at-once = yes");
        QVERIFY(run.toTheEnd());
        QCOMPARE(run.record.told, QStringList { u"failed "_s + sentence });
    }
}

void TestInstallerEngineFailures::exitCodeOfAnUninstaller_data()
{
    addExitCodes();
}

void TestInstallerEngineFailures::exitCodeOfAnUninstaller()
{
    QFETCH(const int, code);
    QFETCH(const QString, sentence);
    EngineScene run("finish-at-once = yes\nexit-code = " + QByteArray::number(code));
    const QString uninstaller = run.sandbox.path(u"unins000.exe"_s);
    QVERIFY(QFile::copy(Sandbox::setupEngine(), uninstaller));
    run.engine.startUninstall(uninstaller);
    QVERIFY(run.record.waitForEnd());
    run.record.settle();
    QCOMPARE(run.record.told, QStringList { u"failed "_s + sentence });
    QCOMPARE(run.engine.lastLogPath(), QString());
    QVERIFY(!QFile::exists(run.keptLog()));
}

void TestInstallerEngineFailures::uninstallerHasNoDetailAfterAFailedInstall()
{
    EngineScene run("exit-code = 4\nmessage-box = " + kSpace.toUtf8());
    QVERIFY(run.toTheEnd());
    const QByteArray kept = run.keptText();

    const QString uninstaller = run.sandbox.path(u"unins000.exe"_s);
    QVERIFY(QFile::copy(Sandbox::setupEngine(), uninstaller));
    run.engine.startUninstall(uninstaller); // there is no list of what to remove
    QVERIFY(run.record.waitForEnd(2));
    run.record.settle();
    QCOMPARE(run.record.errors.last(), u"Setup could not start."_s);
    QCOMPARE(run.engine.lastLogPath(), run.keptLog());
    QCOMPARE(run.keptText(), kept);
}

void TestInstallerEngineFailures::retryFromTheFinishedSignal_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<QString>("program");
    QTest::newRow("exit code") << QByteArray("exit-code = 4") << QString();
    QTest::newRow("crash") << QByteArray("crash = SEGV") << QString();
    QTest::newRow("failed start") << QByteArray() << u"/missing/setup.exe"_s;
}

void TestInstallerEngineFailures::retryFromTheFinishedSignal()
{
    QFETCH(const QByteArray, scenario);
    QFETCH(const QString, program);
    EngineScene run(scenario);
    if (!program.isEmpty())
        run.engine.setSetupExecutable(program);
    const auto retry = [&run] {
        run.sandbox.setScenario("");
        run.engine.setSetupExecutable(Sandbox::setupEngine());
        run.start();
    };
    connect(&run.engine, &InstallerEngine::finished, &run.engine, retry, Qt::SingleShotConnection);
    QVERIFY(run.toTheEnd(2));
    const QList<bool> outcomes { false, true };
    QCOMPARE(run.record.successes, outcomes);
    QCOMPARE(run.record.told.last(), u"finished"_s);
}

QTEST_GUILESS_MAIN(TestInstallerEngineFailures)
#include "tst_installerengine_failures.moc"
