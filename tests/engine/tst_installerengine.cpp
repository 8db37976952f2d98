#include "engine/enginescene.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Runs that go well, with a real child process.
class TestInstallerEngine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void idle();
    void install();
    void installArguments_data();
    void installArguments();
    void programWithBlanksInItsPath();
    void programWithoutAFolder();
    void temporaryFiles();
    void onlyItsOwnFilesGo();
    void twoRunsInARow();
    void uninstall();
    void uninstallAfterInstall();
    void nextRunFromTheFinishedSignal();
};

namespace {

const QRegularExpression kSetupFile(u"^varnel_setup_[0-9a-f]{32}\\.ini$"_s);
const QRegularExpression kUninstallFile(u"^varnel_uninst_[0-9a-f]{32}\\.ini$"_s);

QString fileName(const QString &path)
{
    return QFileInfo(path).fileName();
}

QString native(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

} // namespace

void TestInstallerEngine::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestInstallerEngine::idle()
{
    const Sandbox sandbox;
    InstallerEngine engine;
    EngineRecord record(engine);
    QCOMPARE(engine.setupExecutable(), QString());
    QCOMPARE(engine.statusFilePath(), QString());
    QCOMPARE(engine.logFilePath(), QString());
    QCOMPARE(engine.lastLogPath(), QString());
    QVERIFY(engine.findChildren<QProcess *>().isEmpty());
    engine.poll();
    engine.stop();
    QCOMPARE(record.told, QStringList());
    QCOMPARE(sandbox.tempFiles(), QStringList());
}

void TestInstallerEngine::install()
{
    const Sandbox sandbox;
    const QString folder = sandbox.path(u"Varnel Schematics"_s);
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.setSetupExecutable(Sandbox::setupEngine());
    QCOMPARE(engine.setupExecutable(), Sandbox::setupEngine());
    engine.startInstall(folder, { u"desktopicon"_s });
    QVERIFY(record.told.isEmpty());
    QVERIFY(record.waitForEnd());
    record.settle();

    QCOMPARE(record.successes, QList<bool> { true });
    QCOMPARE(record.errors, QStringList { QString() });
    QVERIFY(QFile::exists(folder + u"/VarnelSolutions.exe"));
    QVERIFY(QFile::exists(folder + u"/unins000.exe"));
    const QStringList shortcuts = QDir(sandbox.path(u"desktop"_s)).entryList(QDir::Files);
    QCOMPARE(shortcuts.size(), 1);
    // The last file that the log names, so it is told however few polls there were.
    QVERIFY(record.files.contains(native(sandbox.path(u"desktop/"_s + shortcuts.first()))));
    QCOMPARE(engine.lastLogPath(), QString());
    QCOMPARE(record.statuses.last(), u"Creating shortcuts\u2026"_s);
    QCOMPARE(record.fractions.last(), 1.0);
}

void TestInstallerEngine::installArguments_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QStringList>("tasks");
    QTest::addColumn<QString>("usedFolder");
    QTest::addColumn<QString>("taskText");
    const auto row = [](const char *name, const QString &folder, const QString &usedFolder) {
        QTest::newRow(name) << folder << QStringList() << usedFolder << QString();
    };
    QTest::newRow("no tasks") << u"/opt/varnel"_s << QStringList() << u"/opt/varnel"_s << u""_s;
    QTest::newRow("one task") << u"/opt/varnel"_s << QStringList { u"desktopicon"_s }
                              << u"/opt/varnel"_s << u"desktopicon"_s;
    QTest::newRow("two tasks") << u"/opt/varnel"_s << QStringList { u"desktopicon"_s, u"b"_s }
                               << u"/opt/varnel"_s << u"desktopicon,b"_s;
    row("no folder", u""_s, u""_s); // then the engine knows where its earlier copy is
    row("root of drive C", u"C:/"_s, u"C:/Varnel Schematics"_s);
    row("root of drive C, back-slash", uR"(C:\)"_s, u"C:/Varnel Schematics"_s);
    row("drive D alone", u"d:"_s, u"d:/Varnel Schematics"_s);
    row("root of the file system", u"/"_s, u"/Varnel Schematics"_s);
    row("redundant parts", u"/opt//a/./../varnel/"_s, u"/opt/varnel"_s);
    row("blanks", u"/opt/Varnel  Schematics/v 1"_s, u"/opt/Varnel  Schematics/v 1"_s);
    row("place markers", u"/opt/a %2 b %1 %3%4 %%"_s, u"/opt/a %2 b %1 %3%4 %%"_s);
    row("other scripts", u"/opt/Schaltpl\u00e4ne \u56de\u8def \U0001f50c"_s,
        u"/opt/Schaltpl\u00e4ne \u56de\u8def \U0001f50c"_s);
    row("switch in the name", u"/opt/a /LOG=b"_s, u"/opt/a /LOG=b"_s);
    row("shell characters", u"/opt/$HOME `a` 'b' ; * & |"_s, u"/opt/$HOME `a` 'b' ; * & |"_s);
}

// As the child process says that it got them.
void TestInstallerEngine::installArguments()
{
    QFETCH(const QString, folder);
    QFETCH(const QStringList, tasks);
    QFETCH(const QString, usedFolder);
    QFETCH(const QString, taskText);
    Sandbox sandbox;
    sandbox.setScenario("finish-at-once = yes");
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.setSetupExecutable(Sandbox::setupEngine());
    engine.startInstall(folder, tasks);
    QVERIFY(record.waitForEnd());

    const QString dir = native(usedFolder);
    const QString status = native(engine.statusFilePath());
    const QList<QStringList> runs = sandbox.engineRuns();
    QCOMPARE(runs.size(), 1);
    QCOMPARE(native(runs.first().first()), native(Sandbox::setupEngine()));
    const QStringList expected {
        u"/VERYSILENT"_s,
        u"/SUPPRESSMSGBOXES"_s,
        u"/NORESTART"_s,
        u"/DIR="_s + dir,
        u"/TASKS="_s + taskText,
        u"/STATUSFILE="_s + status,
        u"/LOG="_s + status + u".log"_s,
    };
    QCOMPARE(runs.first().mid(1), expected);
}

void TestInstallerEngine::programWithBlanksInItsPath()
{
    const Sandbox sandbox;
    const QString folder = sandbox.path(u"My Downloads %1"_s);
    const QString program = folder + u"/varnel setup.exe";
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(QFile::copy(Sandbox::setupEngine(), program));
    const QString target = sandbox.path(u"a %2 b %1"_s);
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.setSetupExecutable(program);
    engine.startInstall(target, {});
    QVERIFY(record.waitForEnd());
    QCOMPARE(record.errors, QStringList { QString() });
    QVERIFY(QFile::exists(target + u"/VarnelSolutions.exe"));
}

// It is the one in the current folder, not the first of this name that the system would find.
void TestInstallerEngine::programWithoutAFolder()
{
    const Sandbox sandbox;
    const QString before = QDir::currentPath();
    QVERIFY(QFile::copy(Sandbox::setupEngine(), sandbox.path(u"setup.exe"_s)));
    QVERIFY(QDir::setCurrent(sandbox.path({})));
    const auto goBack = qScopeGuard([&] { QDir::setCurrent(before); });
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.setSetupExecutable(u"setup.exe"_s);
    engine.startInstall(sandbox.path(u"app"_s), {});
    QVERIFY(record.waitForEnd(1));
    QVERIFY(QDir::setCurrent(sandbox.path(u"app"_s)));
    engine.startUninstall(u"unins000.exe"_s);
    QVERIFY(record.waitForEnd(2));
    const QStringList noErrors { QString(), QString() };
    QCOMPARE(record.errors, noErrors);
}

void TestInstallerEngine::temporaryFiles()
{
    const Sandbox sandbox;
    {
        InstallerEngine engine;
        EngineRecord record(engine);
        engine.setSetupExecutable(Sandbox::setupEngine());
        engine.startInstall(sandbox.path(u"app"_s), {});

        const QString status = engine.statusFilePath();
        QVERIFY2(kSetupFile.match(fileName(status)).hasMatch(), qPrintable(status));
        QVERIFY(QDir::isAbsolutePath(status));
        QCOMPARE(QFileInfo(status).path(), QDir::fromNativeSeparators(sandbox.tempFolder()));
        QCOMPARE(engine.logFilePath(), status + u".log");

        // The files of an ended run stay for whoever shows its outcome.
        QVERIFY(record.waitForEnd());
        record.settle();
        QCOMPARE(engine.statusFilePath(), status);
        const QStringList both { fileName(status), fileName(status) + u".log" };
        QCOMPARE(sandbox.tempFiles(), both);
    }
    QCOMPARE(sandbox.tempFiles(), QStringList());
}

void TestInstallerEngine::onlyItsOwnFilesGo()
{
    const Sandbox sandbox;
    sandbox.write(u"temp/varnel_setup_00000000000000000000000000000000.ini"_s, "progress=99\n");
    sandbox.write(u"temp/other.txt"_s, "text");
    const QStringList before = sandbox.tempFiles();
    {
        InstallerEngine engine;
        EngineRecord record(engine);
        engine.setSetupExecutable(Sandbox::setupEngine());
        engine.startInstall(sandbox.path(u"app"_s), {});
        QVERIFY(record.waitForEnd());
    }
    QCOMPARE(sandbox.tempFiles(), before);
}

void TestInstallerEngine::twoRunsInARow()
{
    const Sandbox sandbox;
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.setSetupExecutable(Sandbox::setupEngine());
    engine.startInstall(sandbox.path(u"app"_s), {});
    const QString first = engine.statusFilePath();
    QVERIFY(record.waitForEnd(1));
    QVERIFY(QFile::exists(first));
    QVERIFY(QFile::exists(first + u".log"));

    engine.startInstall(sandbox.path(u"app"_s), {});
    const QString second = engine.statusFilePath();
    QVERIFY(second != first);
    QVERIFY(!QFile::exists(first));
    QVERIFY(!QFile::exists(first + u".log"));
    QVERIFY(record.waitForEnd(2));
    record.settle();
    const QList<bool> bothWell { true, true };
    QCOMPARE(record.successes, bothWell);
    QCOMPARE(sandbox.engineRuns().size(), 2);
    const QStringList filesOfTheSecond { fileName(second), fileName(second) + u".log" };
    QCOMPARE(sandbox.tempFiles(), filesOfTheSecond);
}

void TestInstallerEngine::uninstall()
{
    const Sandbox sandbox;
    const QString folder = sandbox.path(u"app %1"_s);
    const QString uninstaller = folder + u"/unins000.exe";
    {
        InstallerEngine engine;
        EngineRecord record(engine);
        engine.setSetupExecutable(Sandbox::setupEngine());
        engine.startInstall(folder, { u"desktopicon"_s });
        QVERIFY(record.waitForEnd());
        QVERIFY(record.successes.first());
    }
    {
        InstallerEngine engine; // needs no setup engine
        EngineRecord record(engine);
        engine.startUninstall(uninstaller);
        const QString status = engine.statusFilePath();
        QVERIFY2(kUninstallFile.match(fileName(status)).hasMatch(), qPrintable(status));
        QCOMPARE(QFileInfo(status).path(), QDir::fromNativeSeparators(sandbox.tempFolder()));
        QCOMPARE(engine.logFilePath(), QString());
        QVERIFY(record.waitForEnd());
        record.settle();
        QCOMPARE(record.errors, QStringList { QString() });
        QCOMPARE(record.successes, QList<bool> { true });
        QCOMPARE(record.fractions.last(), 1.0);
        QCOMPARE(record.statuses.last(), u"Unregistering file types\u2026"_s);
        QVERIFY(!QFile::exists(folder));
        QCOMPARE(sandbox.tempFiles(), QStringList { fileName(status) });

        const QList<QStringList> runs = sandbox.engineRuns();
        QCOMPARE(runs.size(), 2);
        const QStringList expected { native(uninstaller), u"/VERYSILENT"_s, u"/SUPPRESSMSGBOXES"_s,
                                     u"/NORESTART"_s, u"/STATUSFILE="_s + native(status) };
        QCOMPARE(runs.last(), expected);
    }
    QCOMPARE(sandbox.tempFiles(), QStringList());
}

void TestInstallerEngine::uninstallAfterInstall()
{
    const Sandbox sandbox;
    const QString folder = sandbox.path(u"app"_s);
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.setSetupExecutable(Sandbox::setupEngine());
    engine.startInstall(folder, {});
    QVERIFY(record.waitForEnd(1));
    engine.startUninstall(folder + u"/unins000.exe");
    QCOMPARE(engine.logFilePath(), QString());
    QVERIFY(record.waitForEnd(2));
    record.settle();
    const QList<bool> bothWell { true, true };
    QCOMPARE(record.successes, bothWell);
    QCOMPARE(sandbox.tempFiles(), QStringList { fileName(engine.statusFilePath()) });
}

void TestInstallerEngine::nextRunFromTheFinishedSignal()
{
    const Sandbox sandbox;
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.setSetupExecutable(Sandbox::setupEngine());
    const QString folder = sandbox.path(u"app"_s);
    connect(
        &engine, &InstallerEngine::finished, &engine,
        [&engine, &folder] { engine.startUninstall(folder + u"/unins000.exe"); },
        Qt::SingleShotConnection);
    engine.startInstall(folder, {});
    QVERIFY(record.waitForEnd(2));
    record.settle();
    const QList<bool> bothWell { true, true };
    QCOMPARE(record.successes, bothWell);
    QVERIFY(!QFile::exists(folder));
}

QTEST_GUILESS_MAIN(TestInstallerEngine)
#include "tst_installerengine.moc"
