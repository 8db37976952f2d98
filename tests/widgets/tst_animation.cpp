#include "pages/manualclock.h"
#include "pages/strictwarnings.h"
#include "widgets/animation.h"

#include <QGraphicsOpacityEffect>
#include <QPropertyAnimation>
#include <QSignalSpy>
#include <QWidget>

namespace {

constexpr int kDuration = 200;

class Subject : public QWidget
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
    void reducedMotionOfTheDesktop();
    void runsInAWindowThatIsYetToBeShown();
    void endsWithTheSight_data();
    void endsWithTheSight();
    void endsAtOnceOutOfSight_data();
    void endsAtOnceOutOfSight();
    void runsAgainInSight();
    void effectEndsWithItsWidget();
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

void TestAnimation::reducedMotionOfTheDesktop()
{
    static bool reduced = true;
    setDesktopMotionQuery([] { return reduced; });
    const auto restore = qScopeGuard([] { setDesktopMotionQuery([] { return false; }); });
    QVERIFY(prefersReducedMotion());
    reduced = false;
    QVERIFY(!prefersReducedMotion());
}

void TestAnimation::runsInAWindowThatIsYetToBeShown()
{
    ManualClock clock;
    Subject subject;
    QPropertyAnimation animation(&subject, "level");
    animation.setDuration(kDuration);
    glideTo(animation, 1.0);
    QCOMPARE(animation.state(), QAbstractAnimation::Running);
    subject.show();
    QCOMPARE(animation.state(), QAbstractAnimation::Running);
    QVERIFY(subject.level() < 1.0);
}

void TestAnimation::endsWithTheSight_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("widget hides") << 0;
    QTest::newRow("window hides") << 1;
    QTest::newRow("window is minimised") << 2;
}

void TestAnimation::endsWithTheSight()
{
    QFETCH(const int, way);
    ManualClock clock;
    QWidget window;
    auto *subject = new Subject;
    subject->setParent(&window);
    window.show();
    QPropertyAnimation animation(subject, "level");
    animation.setDuration(kDuration);
    const QSignalSpy finished(&animation, &QAbstractAnimation::finished);
    for (double target : { 1.0, 0.25 }) { // the second time around it is watched already
        window.showNormal();
        subject->show();
        glideTo(animation, target);
        QCOMPARE(animation.state(), QAbstractAnimation::Running);
        if (way == 0)
            subject->hide();
        else if (way == 1)
            window.hide();
        else
            window.showMinimized();
        QTRY_COMPARE_WITH_TIMEOUT(animation.state(), QAbstractAnimation::Stopped, 10'000);
        QCOMPARE(subject->level(), target);
    }
    QCOMPARE(finished.count(), 2);
}

void TestAnimation::endsAtOnceOutOfSight_data()
{
    QTest::addColumn<bool>("minimised");
    QTest::newRow("hidden") << false;
    QTest::newRow("minimised") << true;
}

void TestAnimation::endsAtOnceOutOfSight()
{
    QFETCH(const bool, minimised);
    ManualClock clock;
    QWidget window;
    auto *subject = new Subject;
    subject->setParent(&window);
    window.show();
    if (minimised)
        window.showMinimized();
    else
        window.hide();
    QPropertyAnimation animation(subject, "level");
    animation.setDuration(kDuration);
    glideTo(animation, 0.8);
    QCOMPARE(animation.state(), QAbstractAnimation::Stopped);
    QCOMPARE(subject->level(), 0.8);
    QTRY_VERIFY_WITH_TIMEOUT(!clock.isRunning(), 10'000);
}

void TestAnimation::runsAgainInSight()
{
    ManualClock clock;
    Subject subject;
    subject.show();
    QPropertyAnimation animation(&subject, "level");
    animation.setDuration(kDuration);
    subject.showMinimized();
    glideTo(animation, 0.8);
    subject.showNormal();
    glideTo(animation, 0.2);
    QCOMPARE(animation.state(), QAbstractAnimation::Running);
    QCOMPARE(subject.level(), 0.8);
    clock.pass(kDuration);
    QCOMPARE(subject.level(), 0.2);
}

void TestAnimation::effectEndsWithItsWidget()
{
    ManualClock clock;
    QWidget window;
    auto *label = new QWidget(&window);
    auto *effect = new QGraphicsOpacityEffect(label);
    effect->setOpacity(0.0);
    label->setGraphicsEffect(effect);
    window.show();
    QPropertyAnimation animation(effect, "opacity");
    animation.setDuration(kDuration);
    glideTo(animation, 1.0);
    QCOMPARE(animation.state(), QAbstractAnimation::Running);
    window.hide();
    QCOMPARE(effect->opacity(), 1.0);
}

void TestAnimation::invisible()
{
    QCOMPARE(kInvisible, 0.001);
}

QTEST_MAIN(TestAnimation)
#include "tst_animation.moc"
