#include "pages/strictwarnings.h"
#include "widgets/delayedstart.h"

#include <QSignalSpy>
#include <QWidget>

using namespace std::chrono_literals;

namespace {

constexpr auto kLong = 1h;

struct Subject
{
    QWidget window;
    QWidget child { &window };
    DelayedStart start { &child };
    QSignalSpy due { &start, &DelayedStart::due };

    [[nodiscard]] QTimer &timer() const { return *start.findChild<QTimer *>(); }
};

} // namespace

class TestDelayedStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void cleanup() { qunsetenv("VARNEL_REDUCED_MOTION"); }
    void isDueOnce();
    void countsAnew();
    void isCalledOff();
    void keepsTime();
    void waitsInAWindowThatIsYetToBeShown();
    void endsWithTheSight_data();
    void endsWithTheSight();
    void startedOutOfSight();
    void startedAnewOutOfSight();
    void calledOffOutOfSight();
    void reducedMotion();
    void goesWithItsWindow();
};

void TestDelayedStart::isDueOnce()
{
    Subject subject;
    subject.window.show();
    subject.start.start(20ms);
    QCOMPARE(subject.due.count(), 0);
    QVERIFY(subject.due.wait(10'000));
    QCOMPARE(subject.due.count(), 1);
    QVERIFY(!subject.timer().isActive());
    subject.window.hide();
    QCOMPARE(subject.due.count(), 1);
}

void TestDelayedStart::countsAnew()
{
    Subject subject;
    subject.window.show();
    subject.start.start(kLong);
    subject.start.start(10ms);
    QVERIFY(subject.due.wait(10'000));
    subject.start.start(10ms);
    subject.start.start(kLong);
    QVERIFY(!subject.due.wait(50));
    QCOMPARE(subject.due.count(), 1);
}

void TestDelayedStart::isCalledOff()
{
    Subject subject;
    subject.window.show();
    subject.start.start(10ms);
    subject.start.stop();
    QVERIFY(!subject.due.wait(50));
}

// The parts of an entrance are to come in step.
void TestDelayedStart::keepsTime()
{
    Subject subject;
    subject.start.start(440ms);
    QVERIFY(subject.timer().isSingleShot());
    QCOMPARE(subject.timer().timerType(), Qt::PreciseTimer);
    QCOMPARE(subject.timer().interval(), 440);
}

void TestDelayedStart::waitsInAWindowThatIsYetToBeShown()
{
    Subject subject;
    subject.start.start(kLong);
    QVERIFY(subject.timer().isActive());
    QCOMPARE(subject.due.count(), 0);
    subject.window.show();
    QVERIFY(subject.timer().isActive());
    QCOMPARE(subject.due.count(), 0);
}

void TestDelayedStart::endsWithTheSight_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("widget hides") << 0;
    QTest::newRow("window hides") << 1;
    QTest::newRow("window is minimised") << 2;
}

void TestDelayedStart::endsWithTheSight()
{
    QFETCH(const int, way);
    Subject subject;
    subject.window.show();
    subject.start.start(kLong);
    if (way == 0)
        subject.child.hide();
    else if (way == 1)
        subject.window.hide();
    else
        subject.window.showMinimized();
    QTRY_COMPARE_WITH_TIMEOUT(subject.due.count(), 1, 10'000);
    QVERIFY(!subject.timer().isActive());
}

void TestDelayedStart::startedOutOfSight()
{
    Subject subject;
    subject.window.show();
    subject.window.hide();
    subject.start.start(kLong);
    QCOMPARE(subject.due.count(), 1);
    QVERIFY(!subject.timer().isActive());
}

void TestDelayedStart::startedAnewOutOfSight()
{
    Subject subject;
    subject.start.start(kLong);
    qputenv("VARNEL_REDUCED_MOTION", "1");
    subject.start.start(kLong);
    QCOMPARE(subject.due.count(), 1);
    QVERIFY(!subject.timer().isActive());
}

void TestDelayedStart::calledOffOutOfSight()
{
    Subject subject;
    subject.window.show();
    subject.start.start(kLong);
    subject.start.stop();
    subject.window.hide();
    QCOMPARE(subject.due.count(), 0);
}

void TestDelayedStart::reducedMotion()
{
    qputenv("VARNEL_REDUCED_MOTION", "1");
    Subject subject;
    subject.window.show();
    subject.start.start(kLong);
    QCOMPARE(subject.due.count(), 1);
    QVERIFY(!subject.timer().isActive());
}

void TestDelayedStart::goesWithItsWindow()
{
    int count = 0;
    {
        QWidget window;
        DelayedStart start(&window);
        connect(&start, &DelayedStart::due, &start, [&count] { ++count; });
        window.show();
        start.start(kLong);
    }
    QCOMPARE(count, 0);
}

QTEST_MAIN(TestDelayedStart)
#include "tst_delayedstart.moc"
