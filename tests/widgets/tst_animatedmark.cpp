#include "pages/manualclock.h"
#include "pages/strictwarnings.h"
#include "pages/timerwatch.h"
#include "support/grab.h"
#include "widgets/animatedmark.h"
#include "widgets/course.h"
#include "widgets/paintwatch.h"

#include <QMetaProperty>
#include <QTest>

#include <array>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

const QList<int> kDelays { 80, 200, 440, 620 };
constexpr std::array<const char *, 4> kParts { "a1Progress", "a2Progress", "a3Progress",
                                               "a4Progress" };

constexpr int kDrift = 2600; // ms

QEasingCurve outBack(double overshoot)
{
    QEasingCurve curve(QEasingCurve::OutBack);
    curve.setOvershoot(overshoot);
    return curve;
}

QList<double> entrance(const AnimatedMark &mark)
{
    return { mark.a1Progress(), mark.a2Progress(), mark.a3Progress(), mark.a4Progress() };
}

const QList<double> kGone { 0.0, 0.0, 0.0, 0.0 };
const QList<double> kThere { 1.0, 1.0, 1.0, 1.0 };

} // namespace

class TestAnimatedMark : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void cleanup() { qunsetenv("VARNEL_REDUCED_MOTION"); }
    void construction();
    void properties();
    void settersRepaint_data();
    void settersRepaint();
    void fillIsClamped_data();
    void fillIsClamped();
    void replayEmptiesTheWidget();
    void replayRepaints();
    void partsComeOneAfterTheOther();
    void entrance_data();
    void entrance();
    void lastPartOvershoots();
    void replayInTheMiddle();
    void oldShotsNeverEnterTheNewRun();
    void entranceInRealTime();
    void entranceDriftAndFillAreIndependent();
    void goesWhileItIsAnimated();
    void reducedMotionEntrance();
};

void TestAnimatedMark::construction()
{
    QWidget parent;
    AnimatedMark mark(&parent);
    mark.setGeometry(0, 0, 136, 110);
    QCOMPARE(mark.parent(), &parent);
    QCOMPARE(mark.sizeHint(), QSize(136, 110));
    QCOMPARE(::entrance(mark), kGone);
    QCOMPARE(mark.driftOffset(), 0.0);
    QVERIFY(!mark.isIdle());
    QVERIFY(mark.testAttribute(Qt::WA_TransparentForMouseEvents));
    QCOMPARE(parent.childAt(68, 55), nullptr);
}

void TestAnimatedMark::properties()
{
    const QMetaObject &meta = AnimatedMark::staticMetaObject;
    QStringList names;
    AnimatedMark mark;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        names << QString::fromLatin1(property.name());
        QCOMPARE(property.metaType(), QMetaType::fromType<double>());
        QVERIFY(property.write(&mark, 1.25)); // an overshoot is kept
        QCOMPARE(property.read(&mark).toDouble(), 1.25);
        QVERIFY(property.write(&mark, -0.1));
        QCOMPARE(property.read(&mark).toDouble(), -0.1);
    }
    QCOMPARE(names,
             QStringList({ u"a1Progress"_s, u"a2Progress"_s, u"a3Progress"_s, u"a4Progress"_s,
                           u"driftOffset"_s }));
}

void TestAnimatedMark::settersRepaint_data()
{
    QTest::addColumn<QByteArray>("property");
    for (const char *part : kParts)
        QTest::newRow(part) << QByteArray(part);
    QTest::newRow("driftOffset") << QByteArray("driftOffset");
    QTest::newRow("fill") << QByteArray();
}

void TestAnimatedMark::settersRepaint()
{
    QFETCH(const QByteArray, property);
    AnimatedMark mark;
    PaintWatch watch(mark);
    if (property.isEmpty())
        mark.setFill(0.5);
    else
        QVERIFY(mark.setProperty(property, 0.5));
    QVERIFY(watch.seesRepaint());
}

void TestAnimatedMark::fillIsClamped_data()
{
    QTest::addColumn<double>("given");
    QTest::addColumn<double>("kept");
    QTest::newRow("below") << -0.5 << 0.0;
    QTest::newRow("empty") << 0.0 << 0.0;
    QTest::newRow("between") << 0.43 << 0.43;
    QTest::newRow("as good as full") << 0.999 << 0.999;
    QTest::newRow("full") << 1.0 << 1.0;
    QTest::newRow("above") << 3.0 << 1.0;
}

void TestAnimatedMark::fillIsClamped()
{
    QFETCH(const double, given);
    QFETCH(const double, kept);
    AnimatedMark mark;
    mark.setFill(given);
    QCOMPARE(mark.fill(), kept);
}

void TestAnimatedMark::replayEmptiesTheWidget()
{
    AnimatedMark mark;
    for (const char *part : kParts)
        mark.setProperty(part, 1.0);
    mark.resize(mark.sizeHint());
    QVERIFY(pixelsUnlike(grabWidget(mark), Qt::transparent) > 1000);
    mark.replay();
    QCOMPARE(::entrance(mark), kGone);
    QCOMPARE(pixelsUnlike(grabWidget(mark), Qt::transparent), 0);
}

void TestAnimatedMark::replayRepaints()
{
    const ManualClock clock; // no frame of an animation comes into it
    AnimatedMark mark;
    for (const char *part : kParts)
        mark.setProperty(part, 1.0);
    PaintWatch watch(mark);
    mark.replay();
    QVERIFY(watch.seesRepaint());
}

void TestAnimatedMark::partsComeOneAfterTheOther()
{
    ManualClock clock;
    TimerWatch timers;
    AnimatedMark mark;
    mark.replay();
    // Each part's animation runs from its own shot on, and no earlier.
    for (int shots = 1; shots <= 4; ++shots) {
        QTRY_VERIFY_WITH_TIMEOUT(timers.shots().size() >= shots, 10000);
        clock.pass(1);
        const qsizetype come = timers.shots().size();
        for (qsizetype part = 0; part < 4; ++part) {
            if (part >= come) {
                QCOMPARE(::entrance(mark).at(part), 0.0);
            }
        }
        QVERIFY(::entrance(mark).at(shots - 1) > 0.0);
    }
    QCOMPARE(timers.shots(), kDelays);
}

void TestAnimatedMark::entrance_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<int>("duration");
    QTest::addColumn<QEasingCurve>("curve");
    QTest::newRow("part 1") << QByteArray("a1Progress") << 580
                            << QEasingCurve(QEasingCurve::OutCubic);
    QTest::newRow("part 2") << QByteArray("a2Progress") << 580
                            << QEasingCurve(QEasingCurve::OutCubic);
    QTest::newRow("part 3") << QByteArray("a3Progress") << 500 << outBack(1.4);
    QTest::newRow("part 4") << QByteArray("a4Progress") << 460 << outBack(2.8);
}

void TestAnimatedMark::entrance()
{
    QFETCH(const QByteArray, property);
    QFETCH(const int, duration);
    QFETCH(const QEasingCurve, curve);
    ManualClock clock;
    TimerWatch timers;
    AnimatedMark mark;
    mark.replay();
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), kDelays, 10000);
    QCOMPARE(departure(clock, { 0.0, 1.0, duration, curve },
                       [&] { return mark.property(property).toDouble(); }),
             QString());
    QCOMPARE(timers.shots(), kDelays);
}

void TestAnimatedMark::lastPartOvershoots()
{
    ManualClock clock;
    TimerWatch timers;
    AnimatedMark mark;
    mark.replay();
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), kDelays, 10000);
    QList<double> highest = kGone;
    for (int time = 0; time < 600; time += 5) {
        clock.pass(5);
        for (qsizetype part = 0; part < 4; ++part)
            highest[part] = qMax(highest[part], ::entrance(mark).at(part));
    }
    QCOMPARE(highest[0], 1.0);
    QCOMPARE(highest[1], 1.0);
    QVERIFY(highest[2] > 1.05 && highest[2] < 1.1);
    QVERIFY(highest[3] > 1.2 && highest[3] < 1.25);
    QCOMPARE(::entrance(mark), kThere);
}

void TestAnimatedMark::replayInTheMiddle()
{
    ManualClock clock;
    TimerWatch timers;
    AnimatedMark mark;
    mark.replay();
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), kDelays, 10000);
    clock.pass(300);
    QVERIFY(mark.a1Progress() > 0.8);
    timers.clear();
    mark.replay();
    QCOMPARE(::entrance(mark), kGone);
    clock.pass(50);
    QCOMPARE(::entrance(mark), kGone); // the old animations have not gone on
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), kDelays, 10000);
    clock.pass(580);
    QCOMPARE(::entrance(mark), kThere);
    QCOMPARE(timers.shots(), kDelays);
}

// The second replay comes between two shots of the first one, whose other two may not come any
// more.
void TestAnimatedMark::oldShotsNeverEnterTheNewRun()
{
    TimerWatch timers;
    AnimatedMark mark;
    QTimer again;
    again.setSingleShot(true);
    again.setInterval(300);
    connect(&again, &QTimer::timeout, &mark, &AnimatedMark::replay);
    mark.replay();
    again.start();
    const QList<int> shots { 80, 200, 300, 80, 200, 440, 620 };
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), shots, 10000);
    QTRY_COMPARE_WITH_TIMEOUT(::entrance(mark), kThere, 10000);
    QCOMPARE(timers.shots(), shots);

    timers.clear();
    mark.replay();
    mark.replay();
    QTRY_COMPARE_WITH_TIMEOUT(::entrance(mark), kThere, 10000);
    QCOMPARE(timers.shots(), kDelays);
}

void TestAnimatedMark::entranceInRealTime()
{
    AnimatedMark mark;
    mark.replay();
    QTRY_COMPARE_WITH_TIMEOUT(::entrance(mark), kThere, 10000);
}

void TestAnimatedMark::entranceDriftAndFillAreIndependent()
{
    ManualClock clock;
    TimerWatch timers;
    AnimatedMark mark;
    mark.show();
    mark.setFill(0.3);
    mark.startIdle();
    clock.pass(kDrift / 4);
    mark.replay();
    QVERIFY(mark.driftOffset() < -0.5);
    QCOMPARE(mark.fill(), 0.3);
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), kDelays, 10000);
    clock.pass(300);
    const QList<double> before = ::entrance(mark);
    QVERIFY(before.first() > 0.5);
    mark.stopIdle();
    mark.setFill(1.0);
    QCOMPARE(::entrance(mark), before);
    clock.pass(300);
    QCOMPARE(::entrance(mark), kThere);
    QCOMPARE(mark.driftOffset(), 0.0);
}

void TestAnimatedMark::goesWhileItIsAnimated()
{
    ManualClock clock;
    TimerWatch timers;
    {
        AnimatedMark mark;
        mark.show();
        mark.startIdle();
        mark.replay();
        QTRY_VERIFY_WITH_TIMEOUT(!timers.shots().isEmpty(), 10000);
    }
    QTRY_VERIFY_WITH_TIMEOUT(!clock.isRunning(), 10000);
    timers.clear();
    AnimatedMark other;
    other.replay();
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), kDelays, 10000);
}

void TestAnimatedMark::reducedMotionEntrance()
{
    qputenv("VARNEL_REDUCED_MOTION", "1");
    const ManualClock clock;
    AnimatedMark mark;
    mark.replay();
    QTRY_COMPARE_WITH_TIMEOUT(::entrance(mark), kThere, 10000);
}

QTEST_MAIN(TestAnimatedMark)
#include "tst_animatedmark.moc"
