#include "pages/timerwatch.h"
#include "wizard/simulatedrun.h"

#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kTick = 70; // ms

const QStringList kFiles {
    uR"(C:\Program Files\Varnel Schematics\libEGL.dll)"_s,
    uR"(C:\Program Files\Varnel Schematics\Qt6Core.dll)"_s,
    uR"(C:\Program Files\Varnel Schematics\Qt6Widgets.dll)"_s,
    uR"(C:\Program Files\Varnel Schematics\Qt6Network.dll)"_s,
    uR"(C:\Program Files\Varnel Schematics\pdfium.dll)"_s,
    uR"(C:\Program Files\Varnel Schematics\glew32.dll)"_s,
    uR"(C:\Program Files\Varnel Schematics\glfw3.dll)"_s,
    uR"(C:\Program Files\Varnel Schematics\config\pcb_themes_builtin.json)"_s,
    uR"(C:\Program Files\Varnel Schematics\symbols\ieee.lib)"_s,
};

} // namespace

class TestSimulatedRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void tellsNothingAtOnce();
    void ticksUntilTheEnd_data();
    void ticksUntilTheEnd();
    void runsInRealTime();
    void namesFilesInTurn();
    void namesAFileOnEveryFifthTickOrSo();

private:
    /// The run's timer, once it has fired for the first time.
    static QTimer *waitForTimer(const TimerWatch &watch);
};

QTimer *TestSimulatedRun::waitForTimer(const TimerWatch &watch)
{
    return QTest::qWaitFor([&] { return watch.repeating(kTick) != nullptr; }, 10'000)
        ? watch.repeating(kTick)
        : nullptr;
}

void TestSimulatedRun::tellsNothingAtOnce()
{
    SimulatedRun run(2.4);
    QSignalSpy progress(&run, &SimulatedRun::progress);
    run.start();
    QCOMPARE(progress.size(), 0);
}

void TestSimulatedRun::ticksUntilTheEnd_data()
{
    QTest::addColumn<double>("step");
    QTest::addColumn<int>("ticks");
    QTest::newRow("update, uninstall") << 2.4 << 42;
    QTest::newRow("install") << 2.2 << 46;
    QTest::newRow("even steps") << 25.0 << 4;
    QTest::newRow("beyond the end at once") << 250.0 << 1;
}

void TestSimulatedRun::ticksUntilTheEnd()
{
    QFETCH(double, step);
    QFETCH(int, ticks);
    TimerWatch watch;
    SimulatedRun run(step);
    QSignalSpy progress(&run, &SimulatedRun::progress);
    QSignalSpy finished(&run, &SimulatedRun::finished);
    bool endedAtOne = false;
    connect(&run, &SimulatedRun::finished, this,
            [&] { endedAtOne = !progress.isEmpty() && progress.last().first().toDouble() == 1.0; });
    run.start();
    QTimer *timer = waitForTimer(watch);
    QVERIFY(timer);
    TimerWatch::fire(timer, 1000);

    QCOMPARE(progress.size(), ticks);
    for (int i = 0; i < ticks; ++i) {
        const double expected = std::min((i + 1) * step, 100.0) / 100.0;
        QVERIFY(std::abs(progress[i].first().toDouble() - expected) < 1e-9);
    }
    QCOMPARE(progress.last().first().toDouble(), 1.0);
    QCOMPARE(finished, QList<QVariantList>({ { true, QString() } }));
    QVERIFY(endedAtOne);
}

// Without any help: nothing else is needed to get to the end.
void TestSimulatedRun::runsInRealTime()
{
    SimulatedRun run(10.0);
    QSignalSpy progress(&run, &SimulatedRun::progress);
    QSignalSpy finished(&run, &SimulatedRun::finished);
    QElapsedTimer clock;
    clock.start();
    run.start();
    QVERIFY(finished.wait(10'000));
    QVERIFY(clock.elapsed() >= 10 * kTick * 9 / 10);
    QCOMPARE(progress.size(), 10);
    QVERIFY(!finished.wait(3 * kTick));
    QCOMPARE(progress.size(), 10);
}

void TestSimulatedRun::namesFilesInTurn()
{
    TimerWatch watch;
    SimulatedRun run(0.1);
    QSignalSpy files(&run, &SimulatedRun::currentFile);
    run.start();
    QTimer *timer = waitForTimer(watch);
    QVERIFY(timer);
    TimerWatch::fire(timer, 1000);
    QVERIFY(files.size() > 2 * kFiles.size());
    for (qsizetype i = 0; i < files.size(); ++i)
        QCOMPARE(files[i].first().toString(), kFiles[i % kFiles.size()]);
}

void TestSimulatedRun::namesAFileOnEveryFifthTickOrSo()
{
    constexpr int kTicks = 20'000;
    TimerWatch watch;
    SimulatedRun run(100.0 / kTicks / 2);
    QSignalSpy files(&run, &SimulatedRun::currentFile);
    run.start();
    QTimer *timer = waitForTimer(watch);
    QVERIFY(timer);
    files.clear();
    TimerWatch::fire(timer, kTicks);
    // Seven standard deviations of 0.0029 on either side.
    const double share = double(files.size()) / kTicks;
    QVERIFY2(share > 0.20 && share < 0.24, qPrintable(QString::number(share)));
}

QTEST_GUILESS_MAIN(TestSimulatedRun)
#include "tst_simulatedrun.moc"
