// The ways through the pages, what a run is made of, and the run that is only shown.

#include "pages/timerwatch.h"
#include "support/stricttest.h"
#include "wizard/pageflow.h"
#include "wizard/runplan.h"
#include "wizard/simulatedrun.h"

#include <QSet>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kTick = 70; // ms
constexpr RunMode kModes[] = { RunMode::Install, RunMode::Update, RunMode::Uninstall };

/// The pages from the first one of `mode` to the one whose button starts the run.
QList<PageId> wayToTheRun(RunMode mode)
{
    QList<PageId> way { runPlan(mode).firstPage };
    while (pageStop(way.last()).right.command == Command::ShowPage && way.size() < kPageCount)
        way.append(pageStop(way.last()).right.target);
    return way;
}

/// A simulation of which every tick is made by the test.
struct Simulation
{
    explicit Simulation(double step) : run(step) {}

    bool start()
    {
        run.start();
        const bool ticks =
            QTest::qWaitFor([&] { return watch.repeating(kTick) != nullptr; }, 10'000);
        timer = watch.repeating(kTick);
        return ticks;
    }

    TimerWatch watch;
    SimulatedRun run;
    QSignalSpy progress { &run, &SimulatedRun::progress };
    QSignalSpy files { &run, &SimulatedRun::currentFile };
    QSignalSpy finished { &run, &SimulatedRun::finished };
    QTimer *timer = nullptr;
};

} // namespace

class TestRunPlan : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void waysLeadToTheRunAndBack();
    void onlyRemovalRemovesUserData();
    void ticksUntilTheEnd_data();
    void ticksUntilTheEnd();
    void filesAreNamedInTurn();
};

void TestRunPlan::waysLeadToTheRunAndBack()
{
    for (RunMode mode : kModes) {
        const QList<PageId> way = wayToTheRun(mode);
        QCOMPARE(pageStop(way.last()).right.command, Command::StartRun);
        for (qsizetype i = 1; i < way.size(); ++i) {
            QCOMPARE(pageStop(way[i]).left.command, Command::ShowPage);
            QCOMPARE(pageStop(way[i]).left.target, way[i - 1]);
        }
        // The first page and the last one can be closed; what was removed cannot be opened.
        QCOMPARE(pageStop(way.first()).left.command, Command::Close);
        const PageStop &end = pageStop(runPlan(mode).finishPage);
        QCOMPARE(end.left.command, Command::Close);
        QCOMPARE(end.right.text != nullptr, mode != RunMode::Uninstall);
        if (end.right.text)
            QCOMPARE(end.right.command, Command::OpenAndClose);
    }
}

void TestRunPlan::onlyRemovalRemovesUserData()
{
    for (RunMode mode : kModes) {
        QStringList steps = runSteps(mode, false);
        QCOMPARE(steps.size(), 4);
        if (mode == RunMode::Uninstall)
            steps.append(u"Removing user data"_s);
        QCOMPARE(runSteps(mode, true), steps);
    }
}

void TestRunPlan::ticksUntilTheEnd_data()
{
    QTest::addColumn<double>("step");
    QTest::addColumn<int>("ticks");
    QTest::newRow("install") << runPlan(RunMode::Install).simulationStep << 46;
    QTest::newRow("update") << runPlan(RunMode::Update).simulationStep << 42;
    QTest::newRow("uninstall") << runPlan(RunMode::Uninstall).simulationStep << 42;
}

void TestRunPlan::ticksUntilTheEnd()
{
    QFETCH(double, step);
    QFETCH(int, ticks);
    Simulation simulation(step);
    qsizetype ticksAtTheEnd = 0;
    connect(&simulation.run, &SimulatedRun::finished, this,
            [&] { ticksAtTheEnd = simulation.progress.size(); });
    QVERIFY(simulation.start());
    TimerWatch::fire(simulation.timer, 1000);

    QCOMPARE(simulation.progress.size(), ticks);
    for (int i = 0; i < ticks; ++i) {
        const double expected = std::min((i + 1) * step, 100.0) / 100.0;
        QVERIFY(std::abs(simulation.progress[i].first().toDouble() - expected) < 1e-9);
    }
    QCOMPARE(simulation.progress.last().first().toDouble(), 1.0);
    QCOMPARE(simulation.finished, QList<QVariantList>({ { true, QString() } }));
    QCOMPARE(ticksAtTheEnd, ticks);
}

void TestRunPlan::filesAreNamedInTurn()
{
    constexpr int kTicks = 20'000;
    Simulation simulation(100.0 / kTicks / 2);
    QVERIFY(simulation.start());
    TimerWatch::fire(simulation.timer, kTicks);
    // 0.22 per tick, within six standard deviations.
    const double expected = 0.22 * kTicks;
    QVERIFY(std::abs(double(simulation.files.size()) - expected) < 6 * std::sqrt(expected * 0.78));

    constexpr int kFiles = 9;
    QSet<QString> files;
    for (qsizetype i = 0; i < simulation.files.size(); ++i) {
        const QString file = simulation.files[i].first().toString();
        files.insert(file);
        QVERIFY(file.startsWith(uR"(C:\Program Files\Varnel Schematics\)"));
        QCOMPARE(file, simulation.files[i % kFiles].first().toString());
    }
    QCOMPARE(files.size(), kFiles);
}

QTEST_GUILESS_MAIN(TestRunPlan)
#include "tst_runplan.moc"
