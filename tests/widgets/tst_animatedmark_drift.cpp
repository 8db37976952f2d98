#include "pages/manualclock.h"
#include "pages/strictwarnings.h"
#include "widgets/animatedmark.h"
#include "widgets/paintwatch.h"

#include <QTest>

#include <cmath>

namespace {

constexpr int kDrift = 2600; // ms
constexpr double kRise = -4.0; // px

/// Where the mark floats `time` ms after the start of a round.
double driftAt(int time)
{
    const double progress =
        QEasingCurve(QEasingCurve::InOutSine).valueForProgress(double(time) / kDrift);
    return kRise * (progress < 0.5 ? progress : 1.0 - progress) * 2.0;
}

bool isNear(double actual, double expected)
{
    return std::abs(actual - expected) < 0.1; // on a busy machine some 20 ms may be lost
}

} // namespace

class TestAnimatedMarkDrift : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void cleanup() { qunsetenv("VARNEL_REDUCED_MOTION"); }
    void floats();
    void isDrawnAnewForEachStep();
    void driftIsStartedOnce();
    void stopIdlePutsTheMarkBack();
    void driftStartsAnew();
    void driftRestsOutOfSight();
    void driftRestsWhileMinimised();
    void idlePassesUnseen();
    void reducedMotion();
};

void TestAnimatedMarkDrift::floats()
{
    ManualClock clock;
    AnimatedMark mark;
    mark.show();
    mark.startIdle();
    QVERIFY(mark.isIdle());
    QCOMPARE(mark.driftOffset(), 0.0);
    for (int round = 0; round < 2; ++round) {
        for (int time = kDrift / 20; time <= kDrift; time += kDrift / 20) {
            clock.pass(kDrift / 20);
            QVERIFY2(isNear(mark.driftOffset(), driftAt(time)), qPrintable(QString::number(time)));
        }
    }
    clock.pass(kDrift / 2);
    QVERIFY(isNear(mark.driftOffset(), kRise));
}

// An eighth of a device pixel is the least that it moves on the screen: no paint for less, and none
// is left out, however slowly it gets there.
void TestAnimatedMarkDrift::isDrawnAnewForEachStep()
{
    AnimatedMark mark;
    PaintWatch watch(mark);
    const double step = 0.125 / mark.devicePixelRatio();
    for (int i = 0; i < 8; ++i) {
        mark.setDriftOffset(-i * step);
        const int paints = watch.settled();
        mark.setDriftOffset(-(i + 0.2) * step);
        mark.setDriftOffset(-(i + 0.4) * step);
        QCOMPARE(watch.settled(), paints);
        mark.setDriftOffset(-(i + 0.6) * step);
        QCOMPARE(watch.settled(), paints + 1);
    }
}

void TestAnimatedMarkDrift::driftIsStartedOnce()
{
    ManualClock clock;
    AnimatedMark mark;
    mark.show();
    mark.startIdle();
    clock.pass(kDrift / 4);
    const double before = mark.driftOffset();
    mark.startIdle();
    QCOMPARE(mark.driftOffset(), before);
    clock.pass(kDrift / 4);
    QVERIFY(isNear(mark.driftOffset(), kRise));
}

void TestAnimatedMarkDrift::stopIdlePutsTheMarkBack()
{
    ManualClock clock;
    AnimatedMark mark;
    PaintWatch watch(mark);
    mark.startIdle();
    clock.pass(kDrift / 2);
    QVERIFY(isNear(mark.driftOffset(), kRise));
    (void)watch.settled();
    mark.stopIdle();
    QVERIFY(!mark.isIdle());
    QCOMPARE(mark.driftOffset(), 0.0);
    QVERIFY(watch.seesRepaint());
    QTRY_VERIFY_WITH_TIMEOUT(!clock.isRunning(), 10000);
    clock.pass(kDrift / 4);
    QCOMPARE(mark.driftOffset(), 0.0);
    mark.setDriftOffset(-2.0); // put there by hand, and without a drift
    mark.stopIdle();
    QCOMPARE(mark.driftOffset(), 0.0);
}

void TestAnimatedMarkDrift::driftStartsAnew()
{
    ManualClock clock;
    AnimatedMark mark;
    mark.show();
    mark.startIdle();
    clock.pass(kDrift / 2);
    mark.stopIdle();
    mark.startIdle();
    QCOMPARE(mark.driftOffset(), 0.0);
    clock.pass(kDrift / 4);
    QVERIFY(isNear(mark.driftOffset(), driftAt(kDrift / 4)));
}

void TestAnimatedMarkDrift::driftRestsOutOfSight()
{
    ManualClock clock;
    AnimatedMark mark;
    mark.startIdle();
    QVERIFY(mark.isIdle());
    QTRY_VERIFY_WITH_TIMEOUT(!clock.isRunning(), 10000);
    mark.show();
    clock.pass(kDrift / 4);
    const double before = mark.driftOffset();
    QVERIFY(isNear(before, driftAt(kDrift / 4)));
    mark.hide();
    QTRY_VERIFY_WITH_TIMEOUT(!clock.isRunning(), 10000);
    QVERIFY(mark.isIdle());
    QCOMPARE(mark.driftOffset(), before);
    mark.show(); // and goes on from there
    QVERIFY(isNear(mark.driftOffset(), before));
    clock.pass(kDrift / 4);
    QVERIFY(isNear(mark.driftOffset(), kRise));
}

void TestAnimatedMarkDrift::driftRestsWhileMinimised()
{
    ManualClock clock;
    QWidget window;
    AnimatedMark mark(&window);
    window.show();
    mark.startIdle();
    QTRY_VERIFY_WITH_TIMEOUT(clock.isRunning(), 10000);
    window.showMinimized();
    QTRY_VERIFY_WITH_TIMEOUT(!clock.isRunning(), 10000);
    mark.startIdle();
    QCoreApplication::processEvents();
    QVERIFY(!clock.isRunning());
    window.showNormal();
    QTRY_VERIFY_WITH_TIMEOUT(clock.isRunning(), 10000);
}

void TestAnimatedMarkDrift::idlePassesUnseen()
{
    ManualClock clock;
    AnimatedMark mark;
    mark.show();
    mark.startIdle();
    clock.pass(kDrift / 2);
    mark.hide();
    mark.stopIdle();
    QCOMPARE(mark.driftOffset(), 0.0);
    mark.show();
    QCoreApplication::processEvents();
    QTRY_VERIFY_WITH_TIMEOUT(!clock.isRunning(), 10000);
    QCOMPARE(mark.driftOffset(), 0.0);
}

void TestAnimatedMarkDrift::reducedMotion()
{
    qputenv("VARNEL_REDUCED_MOTION", "1");
    ManualClock clock;
    AnimatedMark mark;
    mark.show();
    mark.startIdle();
    for (int i = 0; i < 5; ++i)
        QCoreApplication::processEvents();
    QVERIFY(!clock.isRunning());
    QCOMPARE(mark.driftOffset(), 0.0);
    mark.stopIdle();
    QCOMPARE(mark.driftOffset(), 0.0);
}

QTEST_MAIN(TestAnimatedMarkDrift)
#include "tst_animatedmark_drift.moc"
