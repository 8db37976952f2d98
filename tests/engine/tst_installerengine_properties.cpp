#include "engine/enginescene.h"
#include "support/stricttest.h"

#include <QRandomGenerator>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

// Rules that hold whatever happens: runs end, crash, are stopped or started at random moments, from
// outside and from slots of the engine's signals. VARNEL_SEED repeats a sequence.
class TestInstallerEngineProperties : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void interleavings();
};

namespace {

constexpr int kSequences = 30;
constexpr int kStepsPerSequence = 6;

const QByteArrayList kScenarios {
    "",
    "delay-ms = 1",
    "finish-at-once = yes",
    "finish-at-once = yes\nexit-code = 3",
    "exit-code = 4\nstage = half\nmessage-box = Full.",
    "exit-code = 2\nstage = start",
    "exit-code = 5\nlog-none = yes",
    "crash = KILL\nstage = start",
    "crash = SEGV\nstage = before-status",
    "crash = ABRT\nstage = half",
    "crash = KILL\nstage = end",
    "stall = 0.03\nstage = half",
    "stall = forever\nstage = half\nignore-termination = yes",
    "stall = 0.02\ncrash = SEGV\nstage = half",
    "progress = 80\nprogress = 20\nprogress = nan\nprogress = 1e9\nprogress = -4",
    "progress = 99.9999\nprogress = 100\nprogress = 0\ndelay-ms = 2",
    "status-style = half\ndelay-ms = 1",
    "status-path = deleted",
    "hold-pipes = 0.2\nexit-code = 1",
};

/// Checks every signal as it comes. A run is what one call of a start function begins.
class Checker : public QObject
{
public:
    explicit Checker(InstallerEngine &engine)
    {
        connect(&engine, &InstallerEngine::progress, this, [this](double fraction) {
            checkReport("progress");
            check(fraction >= 0.0 && fraction <= 1.0, "progress outside 0 to 1");
            check(fraction >= m_fraction, "progress went backwards");
            m_fraction = fraction;
        });
        connect(&engine, &InstallerEngine::currentFile, this, [this] { checkReport("a file"); });
        connect(&engine, &InstallerEngine::statusChanged, this,
                [this] { checkReport("a status"); });
        connect(&engine, &InstallerEngine::finished, this, &Checker::checkEnd);
    }

    void runBegins()
    {
        m_fraction = 0.0;
        m_state = State::Running;
    }
    void runIsStopped() { m_state = State::Silent; }

    [[nodiscard]] bool isRunning() const { return m_state == State::Running; }

    QStringList complaints;
    int ends = 0;

private:
    enum class State { Silent, Running, Crashed };

    void checkReport(const char *what)
    {
        // A crash is reported before the last poll.
        check(m_state != State::Silent, what + QByteArray(" of a run that has ended"));
    }

    void checkEnd(bool ok, const QString &error)
    {
        ++ends;
        check(m_state == State::Running, "a second end");
        check(ok == error.isEmpty(), "an error without a sentence, or a success with one");
        check(!ok || m_fraction == 1.0, "success without reaching 1");
        m_state = error == u"Process crashed" ? State::Crashed : State::Silent;
    }

    void check(bool holds, const QByteArray &complaint)
    {
        if (!holds)
            complaints << QString::fromLatin1(complaint);
    }

    State m_state = State::Silent;
    double m_fraction = 0.0;
};

/// One engine that is started and stopped at random.
class Sequence : public QObject
{
public:
    explicit Sequence(quint32 seed) : m_random(seed)
    {
        m_engine->setSetupExecutable(Sandbox::setupEngine());
        const auto actSometimes = [this] {
            if (m_random.bounded(12) == 0)
                act();
        };
        connect(m_engine.get(), &InstallerEngine::progress, this, actSometimes);
        connect(m_engine.get(), &InstallerEngine::currentFile, this, actSometimes);
        connect(m_engine.get(), &InstallerEngine::statusChanged, this, actSometimes);
        connect(m_engine.get(), &InstallerEngine::finished, this, actSometimes);
    }

    /// Does something every few milliseconds; then waits for the last run, or stops it.
    void play()
    {
        for (int step = 0; step < kStepsPerSequence; ++step) {
            act();
            QTest::qWait(m_random.bounded(25));
        }
        m_isOver = true;
        if (checker.isRunning() && m_isEndless)
            stop();
        if (checker.isRunning() && !record.waitForEnd(record.successes.size() + 1))
            checker.complaints << u"a run that does not end"_s;
        record.settle();
        m_engine->stop();
        if (!sandbox.tempFiles().isEmpty() && sandbox.tempFiles() != QStringList { kKeptLog })
            checker.complaints << u"left behind: "_s + sandbox.tempFiles().join(u' ');
    }

    Sandbox sandbox;

private:
    static inline const QString kKeptLog = u"varnel_setup_last.log"_s;
    std::unique_ptr<InstallerEngine> m_engine = std::make_unique<InstallerEngine>();

public:
    Checker checker { *m_engine };
    EngineRecord record { *m_engine };

private:
    void act()
    {
        if (m_isOver || m_depth > 3)
            return;
        ++m_depth;
        switch (m_random.bounded(7)) {
        case 0:
        case 1:
            stop();
            break;
        case 2:
            m_engine->poll();
            break;
        case 3:
            m_engine->setSetupExecutable(sandbox.path(u"missing"_s));
            start({});
            m_engine->setSetupExecutable(Sandbox::setupEngine());
            break;
        default:
            start(kScenarios.at(m_random.bounded(kScenarios.size())));
        }
        --m_depth;
    }

    void start(const QByteArray &scenario)
    {
        sandbox.setScenario(scenario);
        m_isEndless = scenario.contains("forever");
        checker.runBegins();
        m_engine->startInstall(sandbox.path(u"app"_s), {});
    }

    void stop()
    {
        checker.runIsStopped();
        m_engine->stop();
    }

    QRandomGenerator m_random;
    bool m_isEndless = false;
    bool m_isOver = false;
    int m_depth = 0;
};

} // namespace

void TestInstallerEngineProperties::interleavings()
{
    const quint32 seed = qEnvironmentVariableIsSet("VARNEL_SEED")
        ? qEnvironmentVariable("VARNEL_SEED").toUInt()
        : QRandomGenerator::global()->generate();
    qInfo("VARNEL_SEED=%u", seed);
    int ends = 0;
    for (int i = 0; i < kSequences; ++i) {
        Sequence sequence(seed + quint32(i));
        sequence.play();
        QVERIFY2(sequence.checker.complaints.isEmpty(),
                 qPrintable(u"with VARNEL_SEED=%1: %2; events: %3"_s.arg(seed + quint32(i))
                                .arg(sequence.checker.complaints.join(u", "),
                                     sequence.record.events.join(u" | "))));
        ends += sequence.checker.ends;
    }
    // Otherwise little was checked. Where processes start slowly, most runs are replaced.
    QVERIFY2(ends > kSequences / 4, qPrintable(QString::number(ends)));
}

QTEST_GUILESS_MAIN(TestInstallerEngineProperties)
#include "tst_installerengine_properties.moc"
