#include "engine/enginescene.h"
#include "engine/process.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Engines that misbehave, each as a real child process.
class TestInstallerEngineFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void crash_data();
    void crash();
    void crashKeepsAnEarlierLog();
    void lastPollOfACrash();
    void crashWithoutACode();
    void statusFile_data();
    void statusFile();
    void statusStyle_data();
    void statusStyle();
    void floodOfOutput();
    void childThatHoldsThePipes_data();
    void childThatHoldsThePipes();
};

void TestInstallerEngineFaults::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestInstallerEngineFaults::crash_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::newRow("segmentation fault, half way") << QByteArray("crash = SEGV");
    QTest::newRow("abort, at the start") << QByteArray("crash = ABRT\nstage = start");
    QTest::newRow("before the first status") << QByteArray("crash = SEGV\nstage = before-status");
    QTest::newRow("killed, when all is done") << QByteArray("crash = KILL\nstage = end");
    QTest::newRow("asked to end") << QByteArray("crash = TERM\nstage = start");
    QTest::newRow("though 100 % done") << QByteArray("crash = ABRT\nprogress = 100");
}

void TestInstallerEngineFaults::crash()
{
    QFETCH(const QByteArray, scenario);
    EngineScene run(scenario + "\nmessage-box = Disk full.");
    const QString errorText = processErrorText(Sandbox::setupEngine());
    QVERIFY(!errorText.isEmpty());
    QVERIFY(run.toTheEnd());
    QCOMPARE(run.record.errors, QStringList { errorText });
    QCOMPARE(run.record.successes, QList<bool> { false });
    QCOMPARE(run.engine.lastLogPath(), QString());
    QVERIFY(!QFile::exists(run.keptLog()));
    // The run's own log is there, so it was not kept on purpose.
    QVERIFY(QFile::exists(run.engine.logFilePath()));
}

void TestInstallerEngineFaults::crashKeepsAnEarlierLog()
{
    EngineScene run("exit-code = 4");
    QVERIFY(run.toTheEnd(1));
    const QByteArray kept = run.keptText();
    run.sandbox.setScenario("crash = SEGV");
    QVERIFY(run.toTheEnd(2));
    QCOMPARE(run.keptText(), kept);
    QCOMPARE(run.engine.lastLogPath(), run.keptLog());
}

void TestInstallerEngineFaults::lastPollOfACrash()
{
    EngineScene run("crash = SEGV");
    QVERIFY(run.toTheEnd());
    // 24 of 54 steps, as the status file had it at last.
    QCOMPARE(run.record.fractions.last(), 0.444);
    QCOMPARE(run.record.successes, QList<bool> { false });
}

// No system of today reports a crash like that, so the test does.
void TestInstallerEngineFaults::crashWithoutACode()
{
    EngineScene run("stall = forever\nstage = start\nlog-line = Error 7 of the disk.");
    run.start();
    const QString log = u"temp/"_s + QFileInfo(run.engine.logFilePath()).fileName();
    QTRY_VERIFY_WITH_TIMEOUT(run.sandbox.read(log).contains("Error 7"), 20'000);
    auto *process = run.engine.findChild<QProcess *>();
    Q_EMIT process->finished(0, QProcess::CrashExit);
    QCOMPARE(run.record.successes, QList<bool> { false });
    const QString error = run.record.errors.first();
    QVERIFY2(error.startsWith(u"Setup exited with code 0.  "_s), qPrintable(error));
    QVERIFY2(error.contains(u"Error 7 of the disk."_s), qPrintable(error));
}

void TestInstallerEngineFaults::statusFile_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<bool>("isReadAtLast");
    QTest::addColumn<bool>("isEverRead");
    QTest::newRow("folder") << QByteArray("status-path = directory") << false << false;
    QTest::newRow("FIFO") << QByteArray("status-path = fifo") << false << false;
    QTest::newRow("never there") << QByteArray("status-path = never") << false << false;
    // It waits long enough for a poll before it deletes.
    QTest::newRow("deleted half way")
        << QByteArray("status-path = deleted\nstall = 2\nstage = half") << false << true;
    QTest::newRow("only half of it") << QByteArray("status-style = half") << true << true;
}

void TestInstallerEngineFaults::statusFile()
{
    QFETCH(const QByteArray, scenario);
    QFETCH(const bool, isReadAtLast);
    QFETCH(const bool, isEverRead);
    EngineScene run(scenario);
    QVERIFY(run.toTheEnd());
    QCOMPARE(run.record.errors, QStringList { QString() });
    const QStringList end { u"progress 1"_s, u"finished"_s };
    QCOMPARE(run.record.told.last(2), end);
    QCOMPARE(run.record.told.size() > end.size(), isEverRead);
    // Without a status file the log is not read either.
    const QString lastFile = QDir::toNativeSeparators(run.sandbox.path(u"app/README.txt"_s));
    QCOMPARE(run.record.files.contains(lastFile), isReadAtLast);
    run.engine.stop();
    for (const QString &file : run.sandbox.tempFiles())
        QVERIFY2(QFileInfo(run.sandbox.tempFolder() + u'/' + file).isDir(), qPrintable(file));
}

void TestInstallerEngineFaults::statusStyle_data()
{
    QTest::addColumn<QByteArray>("style");
    QTest::newRow("plain") << QByteArray("plain");
    QTest::newRow("byte-order mark") << QByteArray("bom");
    QTest::newRow("byte-order mark, no section") << QByteArray("bom, no-section");
    QTest::newRow("CRLF") << QByteArray("crlf");
    QTest::newRow("no final line break") << QByteArray("no-final-newline");
    QTest::newRow("section in capitals") << QByteArray("upper-section");
    QTest::newRow("no section") << QByteArray("no-section");
    QTest::newRow("blanks") << QByteArray("blanks");
    QTest::newRow("all at once") << QByteArray(
        "bom, crlf, blanks, upper-section, no-final-newline");
}

void TestInstallerEngineFaults::statusStyle()
{
    QFETCH(const QByteArray, style);
    EngineScene run("exit-code = 2\nlog-none = yes\nprogress = 37.5\nfile = /x y/\xC3\xA4 %1.z\n"
                    "status = <b>Words</b> \xE2\x80\x94 here\nstatus-style = "
                    + style);
    QVERIFY(run.toTheEnd());
    QCOMPARE(run.record.fractions.last(), 0.375);
    QCOMPARE(run.record.files.last(), u"/x y/\u00e4 %1.z"_s);
    QCOMPARE(run.record.statuses.last(), u"<b>Words</b> \u2014 here"_s);
    QCOMPARE(run.record.errors, QStringList { u"Installation was cancelled."_s });
}

void TestInstallerEngineFaults::floodOfOutput()
{
    EngineScene run("flood-stdout = 64M");
    const qint64 before = peakMemory();
    QVERIFY(run.toTheEnd());
    QCOMPARE(run.record.errors, QStringList { QString() });
    if (before < 0)
        QSKIP("memory cannot be judged");
    QVERIFY(peakMemory() - before < 8 << 20);
}

void TestInstallerEngineFaults::childThatHoldsThePipes_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<QString>("error");
    QTest::newRow("success") << QByteArray() << QString();
    QTest::newRow("exit code") << QByteArray("exit-code = 2\nlog-none = yes")
                               << u"Installation was cancelled."_s;
    QTest::newRow("flood") << QByteArray("flood-stdout = 4M") << QString();
}

void TestInstallerEngineFaults::childThatHoldsThePipes()
{
    QFETCH(const QByteArray, scenario);
    QFETCH(const QString, error);
    EngineScene run("hold-pipes = 30\n" + scenario);
    QElapsedTimer clock;
    clock.start();
    QVERIFY(run.toTheEnd());
    QVERIFY(clock.elapsed() < 15'000);
    QCOMPARE(run.record.errors, QStringList { error });
}

QTEST_GUILESS_MAIN(TestInstallerEngineFaults)
#include "tst_installerengine_faults.moc"
