#include "pages/manualclock.h"
#include "pages/strictwarnings.h"
#include "widgets/animation.h"

#include <QPropertyAnimation>
#include <QSignalSpy>

namespace {

constexpr int kDuration = 200;

class Subject : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double level READ level WRITE setLevel)

public:
    [[nodiscard]] double level() const { return m_level; }
    void setLevel(double level)
    {
        m_level = level;
        levels << level;
    }

    QList<double> levels;

private:
    double m_level = 0.0;
};

} // namespace

class TestAnimation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { qunsetenv("VARNEL_REDUCED_MOTION"); }
    void playsFromItsBeginning();
    void playingAgainStartsOver();
    void glidesFromWhereThePropertyIs();
    void glideTurnsBackWithoutAJump();
    void glideToWhereItIs();
    void glideKeepsItsCurve();
    void reducedMotionEndsAtOnce_data();
    void reducedMotionEndsAtOnce();
    void reducedMotionGlidesAtOnce();
    void reducedMotionIsAskedEachTime();
    void invisible();
};

void TestAnimation::init()
{
    failOnWarnings();
}

void TestAnimation::playsFromItsBeginning()
{
    ManualClock clock;
    Subject subject;
    subject.setLevel(0.7);
    QPropertyAnimation animation(&subject, "level");
    animation.setDuration(kDuration);
    animation.setStartValue(0.25);
    animation.setEndValue(1.0);
    const QSignalSpy finished(&animation, &QAbstractAnimation::finished);
    playOnce(animation);
    QCOMPARE(subject.level(), 0.25);
    QCOMPARE(animation.state(), QAbstractAnimation::Running);
    clock.pass(kDuration / 2);
    QVERIFY(std::abs(subject.level() - 0.625) < 0.02);
    QCOMPARE(finished.count(), 0);
    clock.pass(kDuration);
    QCOMPARE(subject.level(), 1.0);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(animation.state(), QAbstractAnimation::Stopped);
}

void TestAnimation::playingAgainStartsOver()
{
    ManualClock clock;
    Subject subject;
    QPropertyAnimation animation(&subject, "level");
    animation.setDuration(kDuration);
    animation.setStartValue(0.0);
    animation.setEndValue(1.0);
    playOnce(animation);
    clock.pass(150);
    QVERIFY(subject.level() > 0.5);
    playOnce(animation);
    QCOMPARE(subject.level(), 0.0);
    clock.pass(150);
    QVERIFY(std::abs(subject.level() - 0.75) < 0.02);
    clock.pass(50);
    QCOMPARE(subject.level(), 1.0);
    playOnce(animation);
    QCOMPARE(subject.level(), 0.0);
}

void TestAnimation::glidesFromWhereThePropertyIs()
{
    ManualClock clock;
    Subject subject;
    subject.setLevel(0.4);
    QPropertyAnimation animation(&subject, "level");
    animation.setDuration(kDuration);
    glideTo(animation, 0.8);
    QCOMPARE(subject.level(), 0.4);
    clock.pass(kDuration / 2);
    QVERIFY(std::abs(subject.level() - 0.6) < 0.01);
    clock.pass(kDuration / 2);
    QCOMPARE(subject.level(), 0.8);

    subject.setLevel(0.1); // somebody else moved it meanwhile
    glideTo(animation, 0.0);
    QCOMPARE(subject.level(), 0.1);
    clock.pass(kDuration);
    QCOMPARE(subject.level(), 0.0);
}

void TestAnimation::glideTurnsBackWithoutAJump()
{
    ManualClock clock;
    Subject subject;
    QPropertyAnimation animation(&subject, "level");
    animation.setDuration(kDuration);
    animation.setEasingCurve(QEasingCurve::OutCubic);
    glideTo(animation, 1.0);
    clock.pass(60);
    const double turn = subject.level();
    QVERIFY(turn > 0.5 && turn < 0.8);
    subject.levels.clear();
    glideTo(animation, 0.0);
    QCOMPARE(subject.level(), turn);
    for (int i = 0; i < 10; ++i)
        clock.pass(kDuration / 10);
    QCOMPARE(subject.level(), 0.0);
    double before = turn;
    for (double level : std::as_const(subject.levels)) {
        QVERIFY(level <= before);
        before = level;
    }
}

void TestAnimation::glideToWhereItIs()
{
    ManualClock clock;
    Subject subject;
    subject.setLevel(0.5);
    subject.levels.clear();
    QPropertyAnimation animation(&subject, "level");
    animation.setDuration(kDuration);
    glideTo(animation, 0.5);
    clock.pass(kDuration);
    for (double level : std::as_const(subject.levels))
        QCOMPARE(level, 0.5);
    QCOMPARE(animation.state(), QAbstractAnimation::Stopped);
}

void TestAnimation::glideKeepsItsCurve()
{
    ManualClock clock;
    Subject subject;
    QPropertyAnimation animation(&subject, "level");
    animation.setDuration(kDuration);
    animation.setEasingCurve(QEasingCurve::OutBack);
    glideTo(animation, 1.0);
    double highest = 0.0;
    for (int i = 0; i < 20; ++i) {
        clock.pass(kDuration / 20);
        highest = qMax(highest, subject.level());
    }
    QVERIFY(highest > 1.05);
    QCOMPARE(subject.level(), 1.0);
}

void TestAnimation::reducedMotionEndsAtOnce_data()
{
    QTest::addColumn<QByteArray>("wish");
    QTest::addColumn<bool>("atOnce");
    QTest::newRow("asked for") << QByteArray("1") << true;
    QTest::newRow("zero") << QByteArray("0") << false;
    QTest::newRow("empty") << QByteArray("") << false;
    QTest::newRow("a word") << QByteArray("yes") << false;
}

void TestAnimation::reducedMotionEndsAtOnce()
{
    QFETCH(const QByteArray, wish);
    QFETCH(const bool, atOnce);
    ManualClock clock;
    Subject subject;
    QPropertyAnimation animation(&subject, "level");
    animation.setDuration(kDuration);
    animation.setStartValue(0.0);
    animation.setEndValue(1.0);
    animation.setEasingCurve(QEasingCurve::OutBack);
    const QSignalSpy finished(&animation, &QAbstractAnimation::finished);
    qputenv("VARNEL_REDUCED_MOTION", wish);
    playOnce(animation);
    QCOMPARE(subject.level(), atOnce ? 1.0 : 0.0);
    QCOMPARE(finished.count(), atOnce ? 1 : 0);
    QCOMPARE(animation.state(), atOnce ? QAbstractAnimation::Stopped : QAbstractAnimation::Running);
}

void TestAnimation::reducedMotionGlidesAtOnce()
{
    qputenv("VARNEL_REDUCED_MOTION", "1");
    Subject subject;
    subject.setLevel(0.3);
    QPropertyAnimation animation(&subject, "level");
    animation.setDuration(kDuration);
    glideTo(animation, 0.9);
    QCOMPARE(subject.level(), 0.9);
    glideTo(animation, 0.2);
    QCOMPARE(subject.level(), 0.2);
}

void TestAnimation::reducedMotionIsAskedEachTime()
{
    ManualClock clock;
    Subject subject;
    QPropertyAnimation animation(&subject, "level");
    animation.setDuration(kDuration);
    qputenv("VARNEL_REDUCED_MOTION", "1");
    glideTo(animation, 1.0);
    QCOMPARE(subject.level(), 1.0);
    qunsetenv("VARNEL_REDUCED_MOTION");
    glideTo(animation, 0.0);
    QCOMPARE(subject.level(), 1.0);
    clock.pass(kDuration);
    QCOMPARE(subject.level(), 0.0);
}

void TestAnimation::invisible()
{
    QCOMPARE(kInvisible, 0.001);
}

QTEST_MAIN(TestAnimation)
#include "tst_animation.moc"
