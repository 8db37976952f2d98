#include "engine/enginescene.h"
#include "engine/process.h"
#include "support/stricttest.h"

#include <QDir>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

// What is emitted while a run is under way. The child process does nothing here: the test writes
// the status file and the log in its place, one step for each poll.
class TestInstallerEnginePolling : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void steps_data();
    void steps();
    void orderWithinAPoll();
    void logOfAPoll();
    void logNeedsAStatusFile();
    void longStatusFile();
    void uninstallHasNoLog();
    void pollTimer();
};

namespace {

const QByteArray kQuiet = "stall = forever\nstage = start\nlog-none = yes";

/// A run whose child process waits for ever.
struct QuietScene : EngineScene
{
    QuietScene() : EngineScene(kQuiet) { start(); }

    /// What one poll emits.
    [[nodiscard]] QStringList poll()
    {
        record.events.clear();
        engine.poll();
        return record.events;
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

using Polls = QList<QPair<QByteArray, QStringList>>; ///< status text, and what its poll emits

} // namespace

void TestInstallerEnginePolling::steps_data()
{
    QTest::addColumn<Polls>("polls");
    const auto row = [](const char *name, const Polls &polls) { QTest::newRow(name) << polls; };
    const auto fraction = [](double number) {
        return QStringList { u"progress "_s + QString::number(number) };
    };
    const QStringList nothing;

    row("progress never goes back",
        { { "progress=55", fraction(0.55) },
          { "progress=40", nothing },
          { "progress=55", nothing },
          { "progress=56", fraction(0.56) } });
    row("tiny steps add up",
        { { "progress=50", fraction(0.5) },
          { "progress=50.006", nothing },
          { "progress=50.012", fraction(0.50012) },
          { "progress=50.018", nothing } });
    row("first step of just a ten-thousandth",
        { { "progress=0", nothing },
          { "progress=0.01", nothing },
          { "progress=0.0101", fraction(0.000101) } });
    row("end", { { "progress=99.995", fraction(0.99995) }, { "progress=150", nothing } });
    row("no number",
        { { "progress=abc", nothing },
          { "progress=5", fraction(0.05) },
          { "progress=", nothing },
          { "progress=6", fraction(0.06) } });
    row("status",
        { { "status=a", { u"status a"_s } },
          { "status=a", nothing },
          { "status=A", { u"status A"_s } },
          { "status=", nothing },
          { "", nothing },
          { "status=A", nothing },
          { "status=a", { u"status a"_s } } });
    row("file",
        { { "file=a", { u"file a"_s } },
          { "file=a", nothing },
          { "file=b", { u"file b"_s } },
          { "file=", nothing },
          { "[status]", nothing },
          { "file=b", nothing },
          { "file=a", { u"file a"_s } } });
    row("half written",
        { { "progress=4", fraction(0.04) },
          { "progress=42\nfile=C:\\a", { u"progress 0.42"_s, u"file C:\\a"_s } },
          { "progress=42\nfile=C:\\a.dll\nstat", { u"file C:\\a.dll"_s } },
          { "progress=42\nfile=C:\\a.dll\nstatus=s\n", { u"status s"_s } } });
}

void TestInstallerEnginePolling::steps()
{
    QFETCH(const Polls, polls);
    QuietScene scene;
    for (const auto &[text, events] : polls) {
        scene.writeStatus(text);
        QCOMPARE(scene.poll(), events);
    }
}

void TestInstallerEnginePolling::orderWithinAPoll()
{
    QuietScene scene;
    scene.writeStatus("status=c\nfile=a\nprogress=25\n");
    scene.writeLog("x   Dest filename: b\r\n");
    const QStringList all { u"progress 0.25"_s, u"file a"_s, u"status c"_s, u"file b"_s };
    QCOMPARE(scene.poll(), all);
    // The status file still names the other one, and is read first.
    QCOMPARE(scene.poll(), QStringList { u"file a"_s });
    QCOMPARE(scene.poll(), QStringList());
}

void TestInstallerEnginePolling::logOfAPoll()
{
    QuietScene scene;
    scene.writeStatus("progress=0\n");
    QByteArray log = "x   Log opened.\r\n";
    scene.writeLog(log);
    QCOMPARE(scene.poll(), QStringList());
    log += "x   Dest filename: a\r\nx   Dest filename: b\r\nx   Installing the file.\r\n";
    scene.writeLog(log);
    QCOMPARE(scene.poll(), QStringList { u"file b"_s });
    log += "x   Dest filename: b\r\n";
    scene.writeLog(log);
    QCOMPARE(scene.poll(), QStringList());
    // Both name the same file: reported once.
    log += "x   Dest filename: c\r\n";
    scene.writeLog(log);
    scene.writeStatus("file=c\n");
    QCOMPARE(scene.poll(), QStringList { u"file c"_s });
}

void TestInstallerEnginePolling::logNeedsAStatusFile()
{
    QuietScene scene;
    const QString status = scene.engine.statusFilePath();
    scene.writeLog("x   Dest filename: a\r\n");
    QCOMPARE(scene.poll(), QStringList());
    QVERIFY(QDir().mkpath(status));
    QCOMPARE(scene.poll(), QStringList());
    QVERIFY(QDir().rmdir(status));
    if (makeFifo(status)) {
        QCOMPARE(scene.poll(), QStringList());
        QVERIFY(QFile::remove(status));
    }
    // The log has not been read meanwhile.
    scene.writeStatus("");
    QCOMPARE(scene.poll(), QStringList { u"file a"_s });
}

void TestInstallerEnginePolling::longStatusFile()
{
    constexpr qsizetype kLimit = 64 * 1024;
    const QByteArray line = "progress=42\n";
    QuietScene scene;
    scene.writeStatus(QByteArray(kLimit, '\n') + line);
    QCOMPARE(scene.poll(), QStringList());
    // Of a line that the limit cuts in two, the first part counts.
    scene.writeStatus(QByteArray(kLimit - line.size() + 2, '\n') + line);
    QCOMPARE(scene.poll(), QStringList { u"progress 0.04"_s });
    scene.writeStatus(QByteArray(kLimit - line.size() + 1, '\n') + line);
    QCOMPARE(scene.poll(), QStringList { u"progress 0.42"_s });
}

void TestInstallerEnginePolling::uninstallHasNoLog()
{
    EngineScene scene(kQuiet);
    scene.startRemoval();
    scene.writeStatus("progress=5\nfile=a\n");
    scene.writeLog("x   Dest filename: b\r\n");
    scene.engine.poll();
    const QStringList all { u"progress 0.05"_s, u"file a"_s };
    QCOMPARE(scene.record.events, all);
}

void TestInstallerEnginePolling::pollTimer()
{
    QuietScene scene;
    TimerWatch watch;
    QTRY_COMPARE_WITH_TIMEOUT(watch.timers.size(), 1, kPatience);
    const QTimer *timer = *watch.timers.cbegin();
    QCOMPARE(timer->interval(), 50);
    QVERIFY(!timer->isSingleShot());
    scene.writeStatus("progress=5\n");
    QTRY_COMPARE_WITH_TIMEOUT(scene.record.events, QStringList { u"progress 0.05"_s }, kPatience);
    scene.engine.stop();
    QVERIFY(!timer->isActive());

    // None goes on after the end of a run.
    const auto noTimerFires = [&watch] {
        watch.timers.clear();
        QTest::qWait(200); // as long as four polls
        return watch.timers.isEmpty();
    };
    int runs = 0;
    for (const QByteArray scenario : { "", "exit-code = 4", "crash = SEGV" }) {
        scene.sandbox.setScenario(scenario);
        QVERIFY(scene.toTheEnd(++runs));
        QVERIFY2(noTimerFires(), scenario);
    }
    scene.engine.setSetupExecutable(scene.sandbox.path(u"missing.exe"_s));
    QVERIFY(scene.toTheEnd(++runs));
    QVERIFY(noTimerFires());
}

QTEST_GUILESS_MAIN(TestInstallerEnginePolling)
#include "tst_installerengine_polling.moc"
