#include "pages/manualclock.h"
#include "pages/strictwarnings.h"
#include "theme/themed.h"
#include "widgets/course.h"
#include "widgets/paintwatch.h"
#include "widgets/progresstrack.h"

#include <QMetaProperty>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kGlide = 300; // ms
constexpr int kSweep = 1100; // ms

} // namespace

class TestProgressTrack : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { qunsetenv("VARNEL_REDUCED_MOTION"); }
    void construction();
    void properties();
    void valueIsClamped_data();
    void valueIsClamped();
    void settersRepaint();
    void glides_data();
    void glides();
    void percent_data();
    void percent();
    void glidesOnFromWhereItIs();
    void settle();
    void reset();
    void sweepStartsWithIndeterminate();
    void sweepStartsOnce();
    void sweepEndsWithIndeterminate();
    void sweepRestsOutOfSight();
    void targetWhileItSweeps();
    void themeChangeRepaints();
    void reducedMotion();
};

void TestProgressTrack::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestProgressTrack::construction()
{
    QWidget parent;
    ProgressTrack track(&parent);
    track.setGeometry(0, 0, 240, 4);
    QCOMPARE(track.value(), 0.0);
    QCOMPARE(track.target(), 0.0);
    QCOMPARE(track.indeterminatePhase(), 0.0);
    QVERIFY(!track.isIndeterminate());
    QCOMPARE(track.sizeHint(), QSize(240, 4));
    QVERIFY(track.testAttribute(Qt::WA_TransparentForMouseEvents));
    QCOMPARE(parent.childAt(100, 2), nullptr);
}

void TestProgressTrack::properties()
{
    const QMetaObject &meta = ProgressTrack::staticMetaObject;
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 2);
    for (const char *name : { "value", "indeterminatePhase" }) {
        const QMetaProperty property = meta.property(meta.indexOfProperty(name));
        QCOMPARE(property.metaType(), QMetaType::fromType<double>());
        QVERIFY(property.isWritable());
        ProgressTrack track;
        QVERIFY(track.setProperty(name, 0.5));
        QCOMPARE(track.property(name).toDouble(), 0.5);
    }
}

void TestProgressTrack::valueIsClamped_data()
{
    QTest::addColumn<double>("given");
    QTest::addColumn<double>("kept");
    QTest::newRow("below") << -0.5 << 0.0;
    QTest::newRow("lower end") << 0.0 << 0.0;
    QTest::newRow("between") << 0.437 << 0.437;
    QTest::newRow("upper end") << 1.0 << 1.0;
    QTest::newRow("above") << 3.0 << 1.0;
}

void TestProgressTrack::valueIsClamped()
{
    QFETCH(const double, given);
    QFETCH(const double, kept);
    ProgressTrack track;
    track.setValue(given);
    QCOMPARE(track.value(), kept);
    track.setTarget(given);
    QCOMPARE(track.target(), kept);
}

void TestProgressTrack::settersRepaint()
{
    ProgressTrack track;
    PaintWatch watch(track);
    track.setValue(0.5);
    QVERIFY(watch.seesRepaint());
    track.setIndeterminatePhase(0.5);
    QVERIFY(watch.seesRepaint());
    track.setTarget(0.8);
    QVERIFY(watch.seesRepaint());
    track.reset();
    QVERIFY(watch.seesRepaint());
}

void TestProgressTrack::glides_data()
{
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("target");
    QTest::addColumn<double>("to");
    QTest::newRow("up") << 0.0 << 0.43 << 0.43;
    QTest::newRow("on") << 0.25 << 1.0 << 1.0;
    QTest::newRow("back") << 0.8 << 0.2 << 0.2;
    QTest::newRow("too far") << 0.5 << 1.5 << 1.0;
    QTest::newRow("too far back") << 0.5 << -0.05 << 0.0;
}

void TestProgressTrack::glides()
{
    QFETCH(const double, from);
    QFETCH(const double, target);
    QFETCH(const double, to);
    ManualClock clock;
    ProgressTrack track;
    track.setValue(from);
    track.setTarget(target);
    QCOMPARE(track.target(), to);
    QCOMPARE(
        departure(clock, { from, to, kGlide, QEasingCurve::Linear }, [&] { return track.value(); }),
        QString());
}

void TestProgressTrack::percent_data()
{
    QTest::addColumn<int>("percent");
    QTest::addColumn<double>("value");
    QTest::newRow("none") << 0 << 0.0;
    QTest::newRow("one") << 1 << 0.01;
    QTest::newRow("43") << 43 << 0.43;
    QTest::newRow("all") << 100 << 1.0;
    QTest::newRow("more than all") << 150 << 1.0;
    QTest::newRow("less than none") << -5 << 0.0;
}

void TestProgressTrack::percent()
{
    QFETCH(const int, percent);
    QFETCH(const double, value);
    ManualClock clock;
    ProgressTrack track;
    track.setValue(0.6);
    track.setTargetPercent(percent);
    QCOMPARE(track.target(), value);
    QCOMPARE(departure(clock, { 0.6, value, kGlide, QEasingCurve::Linear },
                       [&] { return track.value(); }),
             QString());
}

void TestProgressTrack::glidesOnFromWhereItIs()
{
    ManualClock clock;
    ProgressTrack track;
    track.setTarget(0.4);
    clock.pass(kGlide / 2);
    const double turn = track.value();
    QVERIFY(std::abs(turn - 0.2) < 0.01);
    track.setTarget(1.0);
    QCOMPARE(track.target(), 1.0);
    QCOMPARE(departure(clock, { turn, 1.0, kGlide, QEasingCurve::Linear },
                       [&] { return track.value(); }),
             QString());
}

void TestProgressTrack::settle()
{
    ManualClock clock;
    ProgressTrack track;
    track.setTarget(0.8);
    clock.pass(kGlide / 2);
    track.settle();
    QCOMPARE(track.value(), 0.8);
    clock.pass(kGlide / 4);
    QCOMPARE(track.value(), 0.8);
}

void TestProgressTrack::reset()
{
    ManualClock clock;
    ProgressTrack track;
    track.setTarget(0.8);
    clock.pass(kGlide / 2);
    QVERIFY(track.value() > 0.3);
    track.reset();
    QCOMPARE(track.value(), 0.0);
    QCOMPARE(track.target(), 0.0);
    clock.pass(kGlide);
    QCOMPARE(track.value(), 0.0);
    track.setTarget(0.5);
    clock.pass(kGlide);
    QCOMPARE(track.value(), 0.5);
}

void TestProgressTrack::sweepStartsWithIndeterminate()
{
    ManualClock clock;
    ProgressTrack track;
    track.show();
    clock.pass(kSweep / 2);
    QCOMPARE(track.indeterminatePhase(), 0.0);
    track.setIndeterminate(true);
    QVERIFY(track.isIndeterminate());
    QCOMPARE(track.indeterminatePhase(), 0.0);
    // Round after round, each from left to right in even steps.
    for (int tenth = 1; tenth <= 25; ++tenth) {
        clock.pass(kSweep / 10);
        const double expected = tenth % 10 / 10.0;
        const double off = std::abs(track.indeterminatePhase() - expected);
        QVERIFY2(qMin(off, 1.0 - off) < 0.01, qPrintable(QString::number(tenth)));
    }
}

void TestProgressTrack::sweepStartsOnce()
{
    ManualClock clock;
    ProgressTrack track;
    track.show();
    track.setIndeterminate(true);
    clock.pass(kSweep / 2);
    track.setIndeterminate(true);
    QVERIFY(std::abs(track.indeterminatePhase() - 0.5) < 0.01);
    clock.pass(kSweep / 4);
    QVERIFY(std::abs(track.indeterminatePhase() - 0.75) < 0.01);
}

void TestProgressTrack::sweepEndsWithIndeterminate()
{
    ManualClock clock;
    ProgressTrack track;
    track.show();
    track.setIndeterminate(true);
    clock.pass(kSweep / 2);
    track.setIndeterminate(false);
    QVERIFY(!track.isIndeterminate());
    QTRY_VERIFY_WITH_TIMEOUT(!clock.isRunning(), 10000);
    const double phase = track.indeterminatePhase();
    clock.pass(kSweep / 4);
    QCOMPARE(track.indeterminatePhase(), phase);
    track.setIndeterminate(false);
    QVERIFY(!track.isIndeterminate());
    track.setIndeterminate(true);
    clock.pass(kSweep / 4);
    QVERIFY(std::abs(track.indeterminatePhase() - 0.25) < 0.01);
}

void TestProgressTrack::sweepRestsOutOfSight()
{
    ManualClock clock;
    ProgressTrack track;
    track.setIndeterminate(true);
    QVERIFY(track.isIndeterminate());
    QTRY_VERIFY_WITH_TIMEOUT(!clock.isRunning(), 10000);
    track.show();
    QTRY_VERIFY_WITH_TIMEOUT(clock.isRunning(), 10000);
    track.hide();
    QTRY_VERIFY_WITH_TIMEOUT(!clock.isRunning(), 10000);
    QVERIFY(track.isIndeterminate());
    track.show();
    QTRY_VERIFY_WITH_TIMEOUT(clock.isRunning(), 10000);
    track.showMinimized();
    QTRY_VERIFY_WITH_TIMEOUT(!clock.isRunning(), 10000);
    track.showNormal();
    QTRY_VERIFY_WITH_TIMEOUT(clock.isRunning(), 10000);
    track.setIndeterminate(false);
    QTRY_VERIFY_WITH_TIMEOUT(!clock.isRunning(), 10000);
    track.hide();
    track.show();
    QCoreApplication::processEvents();
    QVERIFY(!clock.isRunning());
}

void TestProgressTrack::targetWhileItSweeps()
{
    ManualClock clock;
    ProgressTrack track;
    track.show();
    track.setIndeterminate(true);
    track.setTarget(0.5);
    clock.pass(kGlide);
    QCOMPARE(track.value(), 0.5);
    QVERIFY(track.isIndeterminate());
    QVERIFY(std::abs(track.indeterminatePhase() - double(kGlide) / kSweep) < 0.01);
}

void TestProgressTrack::themeChangeRepaints()
{
    ProgressTrack track;
    PaintWatch watch(track);
    ThemeManager::instance().setDarkMode(true);
    QVERIFY(watch.seesRepaint());
}

void TestProgressTrack::reducedMotion()
{
    qputenv("VARNEL_REDUCED_MOTION", "1");
    ProgressTrack track;
    track.setTarget(0.6);
    QCOMPARE(track.value(), 0.6);
}

QTEST_MAIN(TestProgressTrack)
#include "tst_progresstrack.moc"
