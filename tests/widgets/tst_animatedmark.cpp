#include "pages/lightthemetest.h"
#include "pages/manualclock.h"
#include "pages/timerwatch.h"
#include "widgets/animatedmark.h"
#include "widgets/course.h"
#include "widgets/paintwatch.h"

#include <QTest>

#include <cmath>

namespace {

const QList<int> kDelays { 80, 200, 440, 620 };

constexpr int kDrift = 2600; // ms
constexpr double kRise = -4.0; // px

const QList<double> kGone { 0.0, 0.0, 0.0, 0.0 };
const QList<double> kThere { 1.0, 1.0, 1.0, 1.0 };

QEasingCurve outBack(double overshoot)
{
    QEasingCurve curve(QEasingCurve::OutBack);
    curve.setOvershoot(overshoot);
    return curve;
}

QList<double> partsOf(const AnimatedMark &mark)
{
    return { mark.a1Progress(), mark.a2Progress(), mark.a3Progress(), mark.a4Progress() };
}

/// Whether the mark floats where it does `time` ms after the start of a round.
bool isAfloat(const AnimatedMark &mark, int time)
{
    const double progress =
        QEasingCurve(QEasingCurve::InOutSine).valueForProgress(double(time) / kDrift);
    const double expected = kRise * (progress < 0.5 ? progress : 1.0 - progress) * 2.0;
    // On a busy machine some 20 ms may be lost.
    return std::abs(mark.driftOffset() - expected) < 0.1;
}

} // namespace

class TestAnimatedMark : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void fillIsClamped();
    void partsComeOneAfterTheOther();
    void entrance_data();
    void entrance();
    void replaysFromTheStart();
    void floats();
    void isDrawnAnewForEachStep();
    void stopIdlePutsTheMarkBack();
    void floatsOnlyWhereItIsSeen();
};

void TestAnimatedMark::fillIsClamped()
{
    AnimatedMark mark;
    PaintWatch watch(mark);
    mark.setFill(0.43);
    QCOMPARE(mark.fill(), 0.43);
    QVERIFY(watch.seesRepaint());
    mark.setFill(-0.5);
    QCOMPARE(mark.fill(), 0.0);
    mark.setFill(3.0);
    QCOMPARE(mark.fill(), 1.0);
}

// Each part's animation runs from its own shot on, and no earlier.
void TestAnimatedMark::partsComeOneAfterTheOther()
{
    ManualClock clock;
    TimerWatch timers;
    AnimatedMark mark;
    mark.replay();
    for (int shots = 1; shots <= 4; ++shots) {
        QTRY_VERIFY_WITH_TIMEOUT(timers.shots().size() >= shots, 10000);
        clock.pass(1);
        QVERIFY(partsOf(mark).at(shots - 1) > 0.0);
        for (qsizetype part = timers.shots().size(); part < 4; ++part)
            QCOMPARE(partsOf(mark).at(part), 0.0);
    }
    QCOMPARE(timers.shots(), kDelays);
}

void TestAnimatedMark::entrance_data()
{
    QTest::addColumn<int>("part");
    QTest::addColumn<int>("duration");
    QTest::addColumn<QEasingCurve>("curve");
    QTest::newRow("left") << 0 << 580 << QEasingCurve(QEasingCurve::OutCubic);
    QTest::newRow("right") << 1 << 580 << QEasingCurve(QEasingCurve::OutCubic);
    QTest::newRow("centre") << 2 << 500 << outBack(1.4);
    QTest::newRow("triangle") << 3 << 460 << outBack(2.8);
}

void TestAnimatedMark::entrance()
{
    QFETCH(const int, part);
    QFETCH(const int, duration);
    QFETCH(const QEasingCurve, curve);
    ManualClock clock;
    TimerWatch timers;
    AnimatedMark mark;
    mark.replay();
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), kDelays, 10000);
    QCOMPARE(
        departure(clock, { 0.0, 1.0, duration, curve }, [&] { return partsOf(mark).at(part); }),
        QString());
}

void TestAnimatedMark::replaysFromTheStart()
{
    ManualClock clock;
    TimerWatch timers;
    AnimatedMark mark;
    mark.replay();
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), kDelays, 10000);
    clock.pass(300); // in the middle
    QVERIFY(mark.a1Progress() > 0.8);
    timers.clear();
    mark.replay();
    mark.replay();
    QCOMPARE(partsOf(mark), kGone);
    clock.pass(50);
    QCOMPARE(partsOf(mark), kGone); // the old animations have not gone on
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), kDelays, 10000);
    clock.pass(580);
    QCOMPARE(partsOf(mark), kThere);
    QCOMPARE(timers.shots(), kDelays); // one each for two replays

    PaintWatch watch(mark);
    mark.replay();
    QVERIFY(watch.seesRepaint());
    QCOMPARE(partsOf(mark), kGone);
}

void TestAnimatedMark::floats()
{
    ManualClock clock;
    AnimatedMark mark;
    mark.show();
    mark.startIdle();
    for (int round = 0; round < 2; ++round) {
        for (int time = kDrift / 20; time <= kDrift; time += kDrift / 20) {
            clock.pass(kDrift / 20);
            QVERIFY2(isAfloat(mark, time), qPrintable(QString::number(time)));
            mark.startIdle(); // does not start it over
        }
    }
}

// An eighth of a device pixel is the least that it moves on the screen: no paint for less, and none
// is left out, however slowly it gets there.
void TestAnimatedMark::isDrawnAnewForEachStep()
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

void TestAnimatedMark::stopIdlePutsTheMarkBack()
{
    ManualClock clock;
    AnimatedMark mark;
    PaintWatch watch(mark);
    mark.startIdle();
    clock.pass(kDrift / 2);
    QVERIFY(isAfloat(mark, kDrift / 2));
    (void)watch.settled();
    mark.stopIdle();
    QCOMPARE(mark.driftOffset(), 0.0);
    QVERIFY(watch.seesRepaint());
    mark.hide();
    mark.show(); // and it does not float again
    QTRY_VERIFY_WITH_TIMEOUT(!clock.isRunning(), 10000);
    mark.startIdle();
    QCOMPARE(mark.driftOffset(), 0.0);
    clock.pass(kDrift / 4);
    QVERIFY(isAfloat(mark, kDrift / 4));
}

void TestAnimatedMark::floatsOnlyWhereItIsSeen()
{
    ManualClock clock;
    AnimatedMark mark;
    mark.startIdle();
    QTRY_VERIFY_WITH_TIMEOUT(!clock.isRunning(), 10000);
    mark.show();
    clock.pass(kDrift / 4);
    QVERIFY(isAfloat(mark, kDrift / 4));
    mark.hide();
    QTRY_VERIFY_WITH_TIMEOUT(!clock.isRunning(), 10000);
    mark.startIdle();
    QCoreApplication::processEvents();
    QVERIFY(!clock.isRunning());
    mark.show(); // and goes on from there
    QVERIFY(isAfloat(mark, kDrift / 4));
    clock.pass(kDrift / 4);
    QVERIFY(isAfloat(mark, kDrift / 2));
}

QTEST_MAIN(TestAnimatedMark)
#include "tst_animatedmark.moc"
