#include "engine/enginescene.h"
#include "engine/installerengine.h"
#include "engine/process.h"
#include "support/sandbox.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

// What is told while a run is under way. The child process does nothing here: the test writes the
// status file and the log in its place, one step for each poll.
class TestInstallerEnginePolling : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void steps_data();
    void steps();
    void orderWithinAPoll();
    void logOfAPoll();
    void logNeedsAStatusFile();
    void statusFileThatIsNoFile();
    void enormousStatusFile();
    void endOfALongStatusFile();
    void uninstallHasNoLog();
    void pollTimer();
};

namespace {

/// A run whose child process waits for ever.
class QuietRun
{
public:
    QuietRun()
    {
        sandbox.setScenario("stall = forever\nstage = start\nlog-none = yes");
        engine.setSetupExecutable(Sandbox::setupEngine());
        engine.startInstall(sandbox.path(u"app"_s), {});
    }

    void writeStatus(const QByteArray &text) const { write(engine.statusFilePath(), text); }
    void writeLog(const QByteArray &text) const { write(engine.logFilePath(), text); }

    /// What one poll tells.
    [[nodiscard]] QStringList poll()
    {
        record.told.clear();
        engine.poll();
        return record.told;
    }

    Sandbox sandbox;
    InstallerEngine engine;
    EngineRecord record { engine };

private:
    void write(const QString &path, const QByteArray &text) const
    {
        sandbox.write(u"temp/"_s + QFileInfo(path).fileName(), text);
    }
};

/// Sees which timers fire in this program.
class TimerWatch : public QObject
{
public:
    TimerWatch() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (auto *timer = qobject_cast<QTimer *>(watched); timer && event->type() == QEvent::Timer)
            timers.insert(timer);
        return false;
    }

    QSet<QTimer *> timers;
};

using Polls = QList<QPair<QByteArray, QStringList>>; ///< status text, and what its poll tells

} // namespace

Q_DECLARE_METATYPE(Polls)

void TestInstallerEnginePolling::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestInstallerEnginePolling::steps_data()
{
    QTest::addColumn<Polls>("polls");
    const auto row = [](const char *name, const Polls &polls) { QTest::newRow(name) << polls; };
    const auto fraction = [](double number) {
        return QStringList { u"progress "_s + QString::number(number) };
    };
    const QStringList nothing;

    row("progress", { { "progress=10", fraction(0.1) }, { "progress=42.5", fraction(0.425) } });
    row("same progress", { { "progress=10", fraction(0.1) }, { "progress=10", nothing } });
    row("never goes back",
        { { "progress=55", fraction(0.55) },
          { "progress=40", nothing },
          { "progress=55", nothing },
          { "progress=56", fraction(0.56) } });
    row("tiny step",
        { { "progress=50", fraction(0.5) },
          { "progress=50.004", nothing },
          { "progress=50.02", fraction(0.5002) } });
    row("tiny steps add up",
        { { "progress=50", fraction(0.5) },
          { "progress=50.006", nothing },
          { "progress=50.012", fraction(0.50012) },
          { "progress=50.018", nothing } });
    row("first step of just a ten-thousandth",
        { { "progress=0.01", nothing }, { "progress=0.0101", fraction(0.000101) } });
    row("beyond the end", { { "progress=150", fraction(1) }, { "progress=200", nothing } });
    row("end", { { "progress=99.995", fraction(0.99995) }, { "progress=100", nothing } });
    row("nothing yet", { { "progress=0", nothing }, { "progress=-5", nothing } });
    row("no number",
        { { "progress=abc", nothing },
          { "progress=5", fraction(0.05) },
          { "progress=", nothing },
          { "progress=42,5", nothing },
          { "progress=6", fraction(0.06) } });
    row("nan", { { "progress=5", fraction(0.05) }, { "progress=nan", nothing } });
    row("inf", { { "progress=inf", fraction(1) } });
    row("blanks around the value", { { "progress = 12", fraction(0.12) } });

    row("status",
        { { "status=a", { u"status a"_s } },
          { "status=a", nothing },
          { "status=b", { u"status b"_s } },
          { "status=a", { u"status a"_s } } });
    row("empty status",
        { { "status=a", { u"status a"_s } },
          { "status=", nothing },
          { "", nothing },
          { "status=a", nothing } });
    row("file",
        { { "file=a", { u"file a"_s } },
          { "file=a", nothing },
          { "file=b", { u"file b"_s } },
          { "file=a", { u"file a"_s } } });
    row("empty file",
        { { "file=a", { u"file a"_s } },
          { "file=", nothing },
          { "[status]", nothing },
          { "file=a", nothing } });
    row("other letter case is another text",
        { { "status=a", { u"status a"_s } }, { "status=A", { u"status A"_s } } });
    row("no known key", { { "speed=5\neta=3\n", nothing } });
    row("half written",
        { { "progress=4", fraction(0.04) },
          { "progress=42\nfile=C:\\a", { u"progress 0.42"_s, u"file C:\\a"_s } },
          { "progress=42\nfile=C:\\a.dll\nstat", { u"file C:\\a.dll"_s } },
          { "progress=42\nfile=C:\\a.dll\nstatus=s\n", { u"status s"_s } } });
}

void TestInstallerEnginePolling::steps()
{
    QFETCH(const Polls, polls);
    QuietRun run;
    for (const auto &[text, told] : polls) {
        run.writeStatus(text);
        QCOMPARE(run.poll(), told);
    }
}

void TestInstallerEnginePolling::orderWithinAPoll()
{
    QuietRun run;
    run.writeStatus("status=c\nfile=a\nprogress=25\n");
    run.writeLog("x   Dest filename: b\r\n");
    const QStringList all { u"progress 0.25"_s, u"file a"_s, u"status c"_s, u"file b"_s };
    QCOMPARE(run.poll(), all);
    // The status file still names the other one, and is read first.
    QCOMPARE(run.poll(), QStringList { u"file a"_s });
    QCOMPARE(run.poll(), QStringList());
}

void TestInstallerEnginePolling::logOfAPoll()
{
    QuietRun run;
    run.writeStatus("progress=0\n");
    QCOMPARE(run.poll(), QStringList());
    QByteArray log = "\xEF\xBB\xBF"
                     "x   Log opened.\r\n";
    run.writeLog(log);
    QCOMPARE(run.poll(), QStringList());
    log += "x   Dest filename: a\r\nx   Dest filename: b\r\nx   Installing the file.\r\n";
    run.writeLog(log);
    QCOMPARE(run.poll(), QStringList { u"file b"_s });
    QCOMPARE(run.poll(), QStringList());
    log += "x   Dest filename: b\r\n";
    run.writeLog(log);
    QCOMPARE(run.poll(), QStringList());
    log += "x   Dest filename: a\r\n";
    run.writeLog(log);
    QCOMPARE(run.poll(), QStringList { u"file a"_s });
    log += "x   Dest filename: \r\n";
    run.writeLog(log);
    QCOMPARE(run.poll(), QStringList());
    // Both name the same file: told once.
    log += "x   Dest filename: c\r\n";
    run.writeLog(log);
    run.writeStatus("file=c\n");
    QCOMPARE(run.poll(), QStringList { u"file c"_s });
}

void TestInstallerEnginePolling::logNeedsAStatusFile()
{
    QuietRun run;
    run.writeLog("x   Dest filename: a\r\n");
    QCOMPARE(run.poll(), QStringList());
    // It has not been read meanwhile.
    run.writeStatus("");
    QCOMPARE(run.poll(), QStringList { u"file a"_s });
}

void TestInstallerEnginePolling::statusFileThatIsNoFile()
{
    QuietRun run;
    const QString path = run.engine.statusFilePath();
    run.writeLog("x   Dest filename: a\r\n");
    QVERIFY(QDir().mkpath(path));
    QCOMPARE(run.poll(), QStringList());
    QVERIFY(QDir().rmdir(path));
    if (!makeFifo(path))
        QSKIP("no FIFOs here");
    QCOMPARE(run.poll(), QStringList());
    QVERIFY(QFile::remove(path));
    run.writeStatus("progress=5\n");
    const QStringList all { u"progress 0.05"_s, u"file a"_s };
    QCOMPARE(run.poll(), all);
}

void TestInstallerEnginePolling::enormousStatusFile()
{
    QuietRun run;
    run.writeStatus("progress=5\nstatus=s\n");
    QVERIFY(QFile::resize(run.engine.statusFilePath(), 256 << 20));
    const qint64 before = peakMemory();
    const QStringList all { u"progress 0.05"_s, u"status s"_s };
    QCOMPARE(run.poll(), all);
    if (before < 0)
        QSKIP("memory cannot be judged");
    QVERIFY(peakMemory() - before < 8 << 20);
}

// The limit may cut a line in two, of which the first part is what counts.
void TestInstallerEnginePolling::endOfALongStatusFile()
{
    constexpr qsizetype kLimit = 64 * 1024;
    const QByteArray line = "progress=42\n";
    QuietRun run;
    run.writeStatus(QByteArray(kLimit, '\n') + line);
    QCOMPARE(run.poll(), QStringList());
    run.writeStatus(QByteArray(kLimit - line.size() + 2, '\n') + line);
    QCOMPARE(run.poll(), QStringList { u"progress 0.04"_s });
    run.writeStatus(QByteArray(kLimit - line.size() + 1, '\n') + line);
    QCOMPARE(run.poll(), QStringList { u"progress 0.42"_s });
}

void TestInstallerEnginePolling::uninstallHasNoLog()
{
    Sandbox sandbox;
    sandbox.setScenario("stall = forever\nstage = start");
    const QString uninstaller = sandbox.path(u"unins000.exe"_s);
    QVERIFY(QFile::copy(Sandbox::setupEngine(), uninstaller));
    InstallerEngine engine;
    EngineRecord record(engine);
    engine.startUninstall(uninstaller);
    const QString status = u"temp/"_s + QFileInfo(engine.statusFilePath()).fileName();
    sandbox.write(status, "progress=5\nfile=a\n");
    sandbox.write(status + u".log", "x   Dest filename: b\r\n");
    engine.poll();
    const QStringList all { u"progress 0.05"_s, u"file a"_s };
    QCOMPARE(record.told, all);
}

void TestInstallerEnginePolling::pollTimer()
{
    EngineScene scene("stall = forever\nstage = start\nlog-none = yes");
    TimerWatch watch;
    scene.start();
    QTRY_COMPARE_WITH_TIMEOUT(watch.timers.size(), 1, 10'000);
    const QTimer *timer = *watch.timers.cbegin();
    QCOMPARE(timer->interval(), 50);
    QVERIFY(!timer->isSingleShot());

    // It is what polls.
    scene.sandbox.write(u"temp/"_s + QFileInfo(scene.engine.statusFilePath()).fileName(),
                        "progress=5\n");
    QTRY_COMPARE_WITH_TIMEOUT(scene.record.told, QStringList { u"progress 0.05"_s }, 10'000);
    scene.engine.stop();
    QVERIFY(!timer->isActive());

    int runs = 0;
    const QString missing = scene.sandbox.path(u"missing.exe"_s);
    for (const QByteArray scenario :
         { "stall = 0.2", "stall = 0.2\nexit-code = 4", "crash = SEGV" }) {
        scene.sandbox.setScenario(scenario);
        QVERIFY(scene.toTheEnd(++runs));
        watch.timers.clear();
        QTest::qWait(200); // as long as four polls
        QCOMPARE(watch.timers.size(), 0);
    }
    scene.engine.setSetupExecutable(missing);
    QVERIFY(scene.toTheEnd(++runs));

    // Some starts fail before they return; where processes can always open one file more, all do.
    scene.engine.setSetupExecutable(Sandbox::setupEngine());
    if (NoMoreFiles::isPossible()) {
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"Cannot create pipe"_s));
        const NoMoreFiles limit;
        scene.start();
        QCOMPARE(scene.record.successes.size(), ++runs);
        QCOMPARE(scene.record.successes.last(), false);
        QVERIFY(!scene.record.errors.last().isEmpty());
    }
    watch.timers.clear();
    QTest::qWait(200);
    QCOMPARE(watch.timers.size(), 0);
}

QTEST_GUILESS_MAIN(TestInstallerEnginePolling)
#include "tst_installerengine_polling.moc"
