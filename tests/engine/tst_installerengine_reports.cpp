#include "engine/enginescene.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// What runs that go well tell, with a real child process.
class TestInstallerEngineReports : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void progressGrows();
    void orderAtTheEnd();
    void lastWordsOfAShortRun();
    void everythingStartsAnew();
    void successWithoutReports_data();
    void successWithoutReports();
    void successIgnoresTheLog();
};

namespace {

QString native(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

} // namespace

void TestInstallerEngineReports::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestInstallerEngineReports::progressGrows()
{
    Sandbox sandbox;
    sandbox.setScenario("delay-ms = 40");
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.setSetupExecutable(Sandbox::setupEngine());
    engine.startInstall(sandbox.path(u"app"_s), {});
    QVERIFY(record.waitForEnd());
    record.settle();
    // Told along the way, not only at the end: the run takes 40 polls.
    QVERIFY2(record.fractions.size() > 3, qPrintable(QString::number(record.fractions.size())));
    QVERIFY(record.files.size() > 3);
    QVERIFY(record.fractions.first() > 0 && record.fractions.first() < 0.9);
    for (qsizetype i = 1; i < record.fractions.size() - 1; ++i)
        QVERIFY(record.fractions[i] > record.fractions[i - 1] + 0.0001);
    QCOMPARE(record.fractions.last(), 1.0);
    const QStringList statuses { u"Extracting application files\u2026"_s,
                                 u"Installing WebView2 Runtime\u2026"_s,
                                 u"Registering .sch and .pcb file types\u2026"_s,
                                 u"Creating shortcuts\u2026"_s };
    // A poll may miss a status that does not last, but tells none twice.
    QVERIFY(record.statuses.size() >= 2);
    qsizetype last = -1;
    for (const QString &status : std::as_const(record.statuses)) {
        QVERIFY2(statuses.indexOf(status) > last, qPrintable(status));
        last = statuses.indexOf(status);
    }
}

void TestInstallerEngineReports::orderAtTheEnd()
{
    Sandbox sandbox;
    sandbox.setScenario("progress = 42.5\nfile = a\nstatus = b\nfiles = 2");
    const QString folder = sandbox.path(u"app"_s);
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.setSetupExecutable(Sandbox::setupEngine());
    engine.startInstall(folder, {});
    QVERIFY(record.waitForEnd());
    record.settle();
    const qsizetype progress = record.told.indexOf(u"progress 0.425"_s);
    const qsizetype file = record.told.indexOf(u"file a"_s);
    const qsizetype status = record.told.indexOf(u"status b"_s);
    QVERIFY(progress >= 0);
    QVERIFY(progress < file);
    QVERIFY(file < status);
    const QStringList end { u"progress 1"_s, u"finished"_s };
    QCOMPARE(record.told.last(2), end);
    QVERIFY(record.files.contains(native(folder + u"/data/000000/file-000001.bin")));
}

void TestInstallerEngineReports::lastWordsOfAShortRun()
{
    Sandbox sandbox;
    sandbox.setScenario("files = 1\nstatus = first\nstatus = middle\nstatus = middle\n"
                        "status = middle\nstatus = middle\nstatus = middle\nstatus = middle\n"
                        "status = last words");
    const QString folder = sandbox.path(u"app"_s);
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.setSetupExecutable(Sandbox::setupEngine());
    engine.startInstall(folder, {});
    QVERIFY(record.waitForEnd());
    QCOMPARE(record.statuses.last(), u"last words"_s);
    QCOMPARE(record.files.last(), native(folder + u"/VarnelSolutions.exe"));
    QVERIFY(record.told.indexOf(u"status last words"_s) < record.told.indexOf(u"finished"_s));
}

void TestInstallerEngineReports::everythingStartsAnew()
{
    Sandbox sandbox;
    sandbox.setScenario("progress = 60\nfile = one file\nstatus = one status\nlog-none = yes");
    InstallerEngine engine;
    engine.setSetupExecutable(Sandbox::setupEngine());
    // Nothing of the first run keeps the same words of the second from being told.
    for (int run = 1; run <= 2; ++run) {
        EngineRecord record(engine);
        engine.startInstall(sandbox.path(u"app"_s), {});
        QVERIFY(record.waitForEnd());
        record.settle();
        QVERIFY(record.fractions.contains(0.6));
        QCOMPARE(record.files.last(), u"one file"_s);
        QCOMPARE(record.statuses.last(), u"one status"_s);
        QCOMPARE(record.told.last(), u"finished"_s);
    }
}

void TestInstallerEngineReports::successWithoutReports_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::newRow("nothing written") << QByteArray("finish-at-once = yes");
    QTest::newRow("no status file") << QByteArray("status-path = never");
    QTest::newRow("progress never grows") << QByteArray("progress = 0");
    QTest::newRow("progress is no number") << QByteArray("progress = abc");
}

void TestInstallerEngineReports::successWithoutReports()
{
    QFETCH(const QByteArray, scenario);
    Sandbox sandbox;
    sandbox.setScenario(scenario);
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.setSetupExecutable(Sandbox::setupEngine());
    engine.startInstall(sandbox.path(u"app"_s), {});
    QVERIFY(record.waitForEnd());
    record.settle();
    QCOMPARE(record.fractions, QList<double> { 1.0 });
    const QStringList end { u"progress 1"_s, u"finished"_s };
    QCOMPARE(record.told.last(2), end);
    QCOMPARE(record.errors, QStringList { QString() });
}

void TestInstallerEngineReports::successIgnoresTheLog()
{
    Sandbox sandbox;
    sandbox.setScenario("log-line = An error: it failed.\nmessage-box = Disk full.");
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.setSetupExecutable(Sandbox::setupEngine());
    engine.startInstall(sandbox.path(u"app"_s), {});
    QVERIFY(record.waitForEnd());
    record.settle();
    QCOMPARE(record.errors, QStringList { QString() });
    QCOMPARE(engine.lastLogPath(), QString());
    QVERIFY(!QFile::exists(sandbox.tempFolder() + u"/varnel_setup_last.log"));
}

QTEST_GUILESS_MAIN(TestInstallerEngineReports)
#include "tst_installerengine_reports.moc"
