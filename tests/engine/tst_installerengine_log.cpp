#include "engine/enginescene.h"
#include "engine/process.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <filesystem>

using namespace Qt::Literals::StringLiterals;

// What becomes of the log of a run that ends with an exit code.
class TestInstallerEngineLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void detail_data();
    void detail();
    void noLog_data();
    void noLog();
    void emptyLog();
    void blankLog();
    void keptLogIsACopy();
    void keptLogIsReplaced();
    void keptLogNeverGoesThroughALink();
    void keptLogSurvives();
    void keptLogCannotBeWritten();
    void longLog();
};

namespace {

const QString kSpace = u"There is not enough space on the disk."_s;

QString withLog(const QString &sentence, const QString &reason, const QString &log)
{
    return sentence + u"  "_s + reason + u"  (log: "_s + QDir::toNativeSeparators(log) + u')';
}

} // namespace

void TestInstallerEngineLog::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestInstallerEngineLog::detail_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const QByteArray &scenario, const QString &reason) {
        QTest::newRow(name) << scenario << reason;
    };
    row("message box", "message-box = " + kSpace.toUtf8(), kSpace);
    row("last of two boxes", "message-box = first\nmessage-box = second", u"second"_s);
    row("first line of a box", "message-box = first\\nsecond", u"first"_s);
    row("box after an error line", "log-line = It failed.\nmessage-box = box", u"box"_s);
    row("place markers", "message-box = 100 %1 of %2 %L1", u"100 %1 of %2 %L1"_s);
    row("markup", "message-box = <b>a</b> & b", u"<b>a</b> & b"_s);
    row("other scripts",
        "message-box = Gr\xC3\xB6\xC3\x9F"
        "e \xE5\x9B\x9E",
        u"Gr\u00f6\u00dfe \u56de"_s);
    row("NUL", "message-box = no" + QByteArray(1, '\0') + "thing", u"nothing"_s);
    row("last line", "", u"Log closed."_s);
}

void TestInstallerEngineLog::detail()
{
    QFETCH(const QByteArray, scenario);
    QFETCH(const QString, reason);
    EngineScene run("exit-code = 4\n" + scenario);
    QVERIFY(run.toTheEnd());
    const QString sentence = u"A fatal error occurred during installation."_s;
    // A line of the log begins with its time.
    const QString timeStamp = u"2000-01-01 00:00:00.000   "_s;
    QString error = run.record.errors.value(0);
    if (scenario.isEmpty())
        error.remove(sentence.size() + 2, timeStamp.size());
    QCOMPARE(error, withLog(sentence, reason, run.keptLog()));
    QCOMPARE(run.record.successes, QList<bool> { false });
}

void TestInstallerEngineLog::noLog_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<bool>("isFolderThere");
    QTest::newRow("none written") << QByteArray("log-none = yes") << false;
    QTest::newRow("ended too early") << QByteArray("finish-at-once = yes") << false;
    QTest::newRow("a folder in its place") << QByteArray("log-none = yes") << true;
}

void TestInstallerEngineLog::noLog()
{
    QFETCH(const QByteArray, scenario);
    QFETCH(const bool, isFolderThere);
    EngineScene run("exit-code = 2\n" + scenario);
    run.sandbox.write(u"temp/varnel_setup_last.log"_s, "of an earlier day");
    run.start();
    if (isFolderThere)
        QVERIFY(QDir().mkpath(run.engine.logFilePath()));
    QVERIFY(run.record.waitForEnd());
    run.record.settle();
    QCOMPARE(run.record.errors, QStringList { u"Installation was cancelled."_s });
    QCOMPARE(run.engine.lastLogPath(), QString());
    QCOMPARE(run.keptText(), "of an earlier day");
}

void TestInstallerEngineLog::emptyLog()
{
    EngineScene run("exit-code = 2\nlog-none = yes");
    run.sandbox.write(u"temp/varnel_setup_last.log"_s, "of an earlier day");
    run.start();
    run.sandbox.write(u"temp/"_s + QFileInfo(run.engine.logFilePath()).fileName(), "");
    QVERIFY(run.record.waitForEnd());
    QCOMPARE(run.record.errors,
             QStringList { u"Installation was cancelled.  Log: "_s
                           + QDir::toNativeSeparators(run.keptLog()) });
    QCOMPARE(run.engine.lastLogPath(), run.keptLog());
    QVERIFY(QFile::exists(run.keptLog()));
    QCOMPARE(run.keptText(), QByteArray());
}

void TestInstallerEngineLog::blankLog()
{
    EngineScene run("exit-code = 2\nlog-none = yes");
    run.start();
    run.sandbox.write(u"temp/"_s + QFileInfo(run.engine.logFilePath()).fileName(),
                      "\xEF\xBB\xBF\r\n   \r\n2026 Suppressed message box\r\n");
    QVERIFY(run.record.waitForEnd());
    QCOMPARE(run.record.errors,
             QStringList { u"Installation was cancelled.  Log: "_s
                           + QDir::toNativeSeparators(run.keptLog()) });
}

void TestInstallerEngineLog::keptLogIsACopy()
{
    EngineScene run("exit-code = 5\nlog-line = something only this log has");
    QVERIFY(run.toTheEnd());
    QFile log(run.engine.logFilePath());
    QVERIFY(log.open(QIODevice::ReadOnly));
    const QByteArray text = log.readAll();
    QVERIFY(text.contains("something only this log has"));
    QVERIFY(text.contains("Log closed."));
    QCOMPARE(run.keptText(), text);
}

void TestInstallerEngineLog::keptLogIsReplaced()
{
    EngineScene run("exit-code = 5\nlog-line = first run\nmessage-box = one");
    run.sandbox.write(u"temp/varnel_setup_last.log"_s, QByteArray(100'000, 'x'));
    QVERIFY(run.toTheEnd(1));
    QVERIFY(run.keptText().contains("first run"));
    QVERIFY(!run.keptText().contains("xxx"));

    run.sandbox.setScenario("exit-code = 4\nlog-line = second run\nmessage-box = two");
    QVERIFY(run.toTheEnd(2));
    QVERIFY(run.keptText().contains("second run"));
    QVERIFY(!run.keptText().contains("first run"));
    QCOMPARE(run.record.errors.last(),
             withLog(u"A fatal error occurred during installation."_s, u"two"_s, run.keptLog()));

    // A run that goes well leaves it alone.
    run.sandbox.setScenario("");
    QVERIFY(run.toTheEnd(3));
    QVERIFY(run.record.successes.last());
    QVERIFY(run.keptText().contains("second run"));
    QCOMPARE(run.engine.lastLogPath(), run.keptLog());
}

void TestInstallerEngineLog::keptLogNeverGoesThroughALink()
{
    EngineScene run("exit-code = 4\nmessage-box = Full.");
    const QString mine = run.sandbox.write(u"mine.txt"_s, "mine");
    std::error_code error;
    std::filesystem::create_symlink(mine.toStdU16String(), run.keptLog().toStdU16String(), error);
    if (error)
        QSKIP("no links here");
    QVERIFY(run.toTheEnd());
    QCOMPARE(run.sandbox.read(u"mine.txt"_s), "mine");
    QVERIFY(!QFileInfo(run.keptLog()).isSymbolicLink());
    QVERIFY(run.keptText().contains("Full."));
}

void TestInstallerEngineLog::keptLogSurvives()
{
    Sandbox sandbox;
    sandbox.setScenario("exit-code = 5");
    {
        InstallerEngine engine;
        EngineRecord record(engine);
        engine.setSetupExecutable(Sandbox::setupEngine());
        engine.startInstall(sandbox.path(u"app"_s), {});
        QVERIFY(record.waitForEnd());
        engine.stop();
        QCOMPARE(QFileInfo(engine.lastLogPath()).fileName(), u"varnel_setup_last.log"_s);
        QCOMPARE(sandbox.tempFiles(), QStringList { u"varnel_setup_last.log"_s });
    }
    QCOMPARE(sandbox.tempFiles(), QStringList { u"varnel_setup_last.log"_s });
}

void TestInstallerEngineLog::keptLogCannotBeWritten()
{
    EngineScene run("exit-code = 4\nmessage-box = " + kSpace.toUtf8());
    QVERIFY(QDir().mkpath(run.keptLog() + u"/folder"));
    QVERIFY(run.toTheEnd());
    QCOMPARE(run.record.errors,
             QStringList { withLog(u"A fatal error occurred during installation."_s, kSpace,
                                   run.keptLog()) });
    QCOMPARE(run.engine.lastLogPath(), run.keptLog());
}

void TestInstallerEngineLog::longLog()
{
    EngineScene run("log-size = 48M\nexit-code = 4\nmessage-box = " + kSpace.toUtf8());
    const qint64 before = peakMemory();
    QVERIFY(run.toTheEnd());
    QCOMPARE(run.record.errors,
             QStringList { withLog(u"A fatal error occurred during installation."_s, kSpace,
                                   run.keptLog()) });
    if (before < 0)
        QSKIP("memory cannot be judged");
    QVERIFY(peakMemory() - before < 8 << 20);
}

QTEST_GUILESS_MAIN(TestInstallerEngineLog)
#include "tst_installerengine_log.moc"
