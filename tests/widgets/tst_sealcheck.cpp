#include "pages/manualclock.h"
#include "pages/strictwarnings.h"
#include "pages/timerwatch.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/course.h"
#include "widgets/paintwatch.h"
#include "widgets/sealcheck.h"

#include <QMetaProperty>

using namespace Qt::Literals::StringLiterals;

namespace {

const QList<int> kOneShot { 280 };

const Course kDisc { 0.0, 1.0, 400, QEasingCurve::OutBack };
const Course kMark { 0.0, 1.0, 380, QEasingCurve::OutCubic };

} // namespace

class TestSealCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { qunsetenv("VARNEL_REDUCED_MOTION"); }
    void construction();
    void properties();
    void settersRepaint();
    void discPopsIn();
    void discOvershoots();
    void markFollowsTheDisc();
    void playingInRealTime();
    void playingAgainStartsOver();
    void oldShotNeverEntersTheNewRun();
    void playingTwiceInARow();
    void playingRepaintsAtOnce();
    void goesBeforeItsShot();
    void themeChangeRepaints();
    void reducedMotion();
};

void TestSealCheck::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestSealCheck::construction()
{
    QWidget parent;
    SealCheck seal(&parent);
    seal.setGeometry(0, 0, 46, 46);
    QCOMPARE(seal.circleProgress(), 0.0);
    QCOMPARE(seal.checkProgress(), 0.0);
    QCOMPARE(seal.sizeHint(), QSize(46, 46));
    QVERIFY(seal.testAttribute(Qt::WA_TransparentForMouseEvents));
    QCOMPARE(parent.childAt(23, 23), nullptr);
    QCOMPARE(pixelsUnlike(grabWidget(seal), Qt::transparent), 0);
}

void TestSealCheck::properties()
{
    const QMetaObject &meta = SealCheck::staticMetaObject;
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 2);
    for (const char *name : { "circleProgress", "checkProgress" }) {
        const QMetaProperty property = meta.property(meta.indexOfProperty(name));
        QCOMPARE(property.metaType(), QMetaType::fromType<double>());
        QVERIFY(property.isWritable());
        SealCheck seal;
        QVERIFY(seal.setProperty(name, 1.08)); // an overshoot is kept
        QCOMPARE(seal.property(name).toDouble(), 1.08);
    }
}

void TestSealCheck::settersRepaint()
{
    SealCheck seal;
    PaintWatch watch(seal);
    seal.setCircleProgress(1.0);
    QVERIFY(watch.seesRepaint());
    seal.setCheckProgress(0.5);
    QVERIFY(watch.seesRepaint());
}

void TestSealCheck::discPopsIn()
{
    ManualClock clock;
    SealCheck seal;
    seal.play();
    QCOMPARE(departure(clock, kDisc, [&] { return seal.circleProgress(); }), QString());
}

void TestSealCheck::discOvershoots()
{
    ManualClock clock;
    SealCheck seal;
    seal.play();
    double highest = 0.0;
    for (int i = 0; i < 40; ++i) {
        clock.pass(10);
        highest = qMax(highest, seal.circleProgress());
    }
    QVERIFY(highest > 1.08);
    QVERIFY(highest < 1.12);
    QCOMPARE(seal.circleProgress(), 1.0);
}

void TestSealCheck::markFollowsTheDisc()
{
    ManualClock clock;
    TimerWatch timers;
    SealCheck seal;
    seal.play();
    QCOMPARE(seal.checkProgress(), 0.0);
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), kOneShot, 10000);
    QCOMPARE(departure(clock, kMark, [&] { return seal.checkProgress(); }), QString());
    QCOMPARE(seal.circleProgress(), 1.0);
    QCOMPARE(timers.shots(), kOneShot);
}

void TestSealCheck::playingInRealTime()
{
    SealCheck seal;
    seal.play();
    QTRY_COMPARE_WITH_TIMEOUT(seal.checkProgress(), 1.0, 10000);
    QTRY_COMPARE_WITH_TIMEOUT(seal.circleProgress(), 1.0, 10000);
}

void TestSealCheck::playingAgainStartsOver()
{
    ManualClock clock;
    TimerWatch timers;
    SealCheck seal;
    seal.play();
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), kOneShot, 10000);
    clock.pass(150);
    QVERIFY(seal.circleProgress() > 0.5);
    QVERIFY(seal.checkProgress() > 0.5);
    timers.clear();
    seal.play();
    QCOMPARE(seal.circleProgress(), 0.0);
    QCOMPARE(seal.checkProgress(), 0.0);
    clock.pass(50);
    QCOMPARE(seal.checkProgress(), 0.0); // the old animation has not gone on
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), kOneShot, 10000);
    QCOMPARE(departure(clock, kMark, [&] { return seal.checkProgress(); }), QString());

    timers.clear(); // and once more, after the end
    seal.play();
    QCOMPARE(seal.circleProgress(), 0.0);
    QCOMPARE(seal.checkProgress(), 0.0);
    QCOMPARE(departure(clock, kDisc, [&] { return seal.circleProgress(); }), QString());
}

// Of two plays that are close together, only the second one's shot may come.
void TestSealCheck::oldShotNeverEntersTheNewRun()
{
    TimerWatch timers;
    SealCheck seal;
    QTimer again;
    again.setSingleShot(true);
    again.setInterval(140);
    connect(&again, &QTimer::timeout, &seal, &SealCheck::play);
    seal.play();
    again.start();
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), QList<int>({ 140, 280 }), 10000);
    QTRY_COMPARE_WITH_TIMEOUT(seal.checkProgress(), 1.0, 10000);
    QCOMPARE(timers.shots(), QList<int>({ 140, 280 }));
}

void TestSealCheck::playingTwiceInARow()
{
    ManualClock clock;
    TimerWatch timers;
    SealCheck seal;
    seal.play();
    seal.play();
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), kOneShot, 10000);
    QCOMPARE(departure(clock, kMark, [&] { return seal.checkProgress(); }), QString());
    SealCheck later;
    later.play();
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), QList<int>({ 280, 280 }), 10000);
    QCOMPARE(seal.checkProgress(), 1.0); // no second shot of the first seal
}

void TestSealCheck::playingRepaintsAtOnce()
{
    const ManualClock clock; // no frame of an animation comes into it
    SealCheck seal;
    seal.setCircleProgress(1.0);
    seal.setCheckProgress(1.0);
    PaintWatch watch(seal);
    seal.play();
    QVERIFY(watch.seesRepaint());
    QCOMPARE(pixelsUnlike(grabWidget(seal), Qt::transparent), 0);
}

void TestSealCheck::goesBeforeItsShot()
{
    TimerWatch timers;
    {
        SealCheck seal;
        seal.play();
    }
    SealCheck other;
    other.play();
    QTRY_COMPARE_WITH_TIMEOUT(other.checkProgress(), 1.0, 10000);
    QCOMPARE(timers.shots(), kOneShot);
}

void TestSealCheck::themeChangeRepaints()
{
    SealCheck seal;
    PaintWatch watch(seal);
    ThemeManager::instance().setDarkMode(true);
    QVERIFY(watch.seesRepaint());
}

void TestSealCheck::reducedMotion()
{
    qputenv("VARNEL_REDUCED_MOTION", "1");
    SealCheck seal;
    seal.play();
    QCOMPARE(seal.circleProgress(), 1.0);
    QTRY_COMPARE_WITH_TIMEOUT(seal.checkProgress(), 1.0, 10000);
}

QTEST_MAIN(TestSealCheck)
#include "tst_sealcheck.moc"
