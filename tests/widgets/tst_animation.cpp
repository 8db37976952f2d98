// What all animations are made of: how they run, when they start, and whether they can be seen.

#include "pages/lightthemetest.h"
#include "pages/manualclock.h"
#include "widgets/animation.h"
#include "widgets/course.h"
#include "widgets/delayedstart.h"
#include "widgets/reducedmotion.h"

#include <QPropertyAnimation>
#include <QSignalSpy>

using namespace std::chrono_literals;

namespace {

constexpr int kDuration = 200;
constexpr auto kLong = 1h;

class Moving : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(double level READ level WRITE setLevel)

public:
    using QWidget::QWidget;

    [[nodiscard]] double level() const { return m_level; }
    void setLevel(double level) { m_level = level; }

private:
    double m_level = 0.0;
};

/// A window that is not shown yet, something that moves in it and something that starts later.
struct Scene
{
    Scene() { animation.setDuration(kDuration); }

    [[nodiscard]] bool isRunning() const
    {
        return animation.state() == QPropertyAnimation::Running;
    }
    [[nodiscard]] QTimer &timer() const { return *start.findChild<QTimer *>(); }

    QWidget window;
    Moving child { &window };
    QPropertyAnimation animation { &child, "level" };
    QSignalSpy finished { &animation, &QPropertyAnimation::finished };
    DelayedStart start { &child };
    QSignalSpy due { &start, &DelayedStart::due };
};

} // namespace

class TestAnimation : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void playsFromItsBeginning();
    void glidesFromWhereThePropertyIs();
    void delayedStart();
    void reducedMotion();
    void reducedMotionOfTheDesktop();
    void runsInAWindowThatIsNotShownYet();
    void endsWhenItIsHidden_data();
    void endsWhenItIsHidden();
    void watcherFollowsTheWidgetAndItsWindow();
    void watcherOfAWidgetThatMovesToAnotherWindow();
};

void TestAnimation::playsFromItsBeginning()
{
    ManualClock clock;
    Scene scene;
    scene.child.setLevel(0.7);
    scene.animation.setStartValue(0.25);
    scene.animation.setEndValue(1.0);
    const auto level = [&] { return scene.child.level(); };
    playOnce(scene.animation);
    clock.pass(kDuration / 2);
    QVERIFY(scene.child.level() > 0.5);
    playOnce(scene.animation); // in the middle, and once more after the end
    QCOMPARE(departure(clock, { 0.25, 1.0, kDuration, QEasingCurve::Linear }, level), QString());
    QCOMPARE(scene.finished.count(), 1);
    playOnce(scene.animation);
    QCOMPARE(scene.child.level(), 0.25);
}

void TestAnimation::glidesFromWhereThePropertyIs()
{
    ManualClock clock;
    Scene scene;
    scene.child.setLevel(0.4);
    scene.animation.setEasingCurve(QEasingCurve::OutBack);
    const auto level = [&] { return scene.child.level(); };
    glideTo(scene.animation, 0.8);
    QCOMPARE(departure(clock, { 0.4, 0.8, kDuration, QEasingCurve::OutBack }, level), QString());
    scene.child.setLevel(0.1); // something else has moved it meanwhile
    glideTo(scene.animation, 1.0);
    QCOMPARE(scene.child.level(), 0.1);
    clock.pass(60);
    const double turn = scene.child.level();
    QVERIFY(turn > 0.3);
    glideTo(scene.animation, 0.0);
    QCOMPARE(departure(clock, { turn, 0.0, kDuration, QEasingCurve::OutBack }, level), QString());
}

void TestAnimation::delayedStart()
{
    Scene scene;
    scene.window.show();
    scene.start.start(kLong);
    scene.start.start(20ms); // counts anew
    QCOMPARE(scene.timer().interval(), 20);
    QCOMPARE(scene.timer().timerType(), Qt::PreciseTimer); // the parts of an entrance keep step
    QCOMPARE(scene.due.count(), 0);
    QVERIFY(scene.due.wait(10'000));
    QVERIFY(!scene.timer().isActive());
    scene.start.start(10ms);
    scene.start.start(kLong);
    QVERIFY(!scene.due.wait(50));
    scene.start.stop();
    scene.window.hide(); // which brings what is still to come
    QCOMPARE(scene.due.count(), 1);
}

void TestAnimation::reducedMotion()
{
    const ManualClock clock;
    Scene scene;
    scene.window.show();
    scene.child.setLevel(0.3);
    glideTo(scene.animation, 0.9);
    scene.start.start(kLong);
    QVERIFY(scene.isRunning());
    {
        const ReducedMotion reduced;
        glideTo(scene.animation, 0.8);
        QCOMPARE(scene.child.level(), 0.8);
        QCOMPARE(scene.finished.count(), 1);
        QVERIFY(!scene.isRunning());
        scene.start.start(kLong);
        QCOMPARE(scene.due.count(), 1);
        QVERIFY(!scene.timer().isActive());
    }
    glideTo(scene.animation, 0.2); // the user is asked each time
    QCOMPARE(scene.child.level(), 0.8);
    QVERIFY(scene.isRunning());
}

void TestAnimation::reducedMotionOfTheDesktop()
{
    static bool reduced = true;
    setDesktopMotionQuery([] { return reduced; });
    const auto restore = qScopeGuard([] { setDesktopMotionQuery([] { return false; }); });
    QVERIFY(prefersReducedMotion());
    reduced = false;
    QVERIFY(!prefersReducedMotion());
    qputenv("VARNEL_REDUCED_MOTION", "0");
    QVERIFY(!prefersReducedMotion());
    qunsetenv("VARNEL_REDUCED_MOTION");
}

void TestAnimation::runsInAWindowThatIsNotShownYet()
{
    const ManualClock clock;
    Scene scene;
    glideTo(scene.animation, 1.0);
    scene.start.start(kLong);
    for (int i = 0; i < 2; ++i) {
        QVERIFY(scene.isRunning());
        QVERIFY(scene.timer().isActive());
        scene.window.show();
    }
    QCOMPARE(scene.due.count(), 0);
}

void TestAnimation::endsWhenItIsHidden_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("widget is hidden") << 0;
    QTest::newRow("window is hidden") << 1;
    QTest::newRow("window is minimised") << 2;
}

void TestAnimation::endsWhenItIsHidden()
{
    QFETCH(const int, way);
    const ManualClock clock;
    Scene scene;
    for (double target : { 1.0, 0.25 }) { // the second time around it is watched already
        scene.window.showNormal();
        scene.child.show();
        glideTo(scene.animation, target);
        scene.start.start(kLong);
        QVERIFY(scene.isRunning());
        if (way == 0)
            scene.child.hide();
        else if (way == 1)
            scene.window.hide();
        else
            scene.window.showMinimized();
        QTRY_VERIFY_WITH_TIMEOUT(!scene.isRunning(), 10'000);
        QCOMPARE(scene.child.level(), target);
        QVERIFY(!scene.timer().isActive());
    }
    QCOMPARE(scene.finished.count(), 2);
    QCOMPARE(scene.due.count(), 2);
    if (way == 0)
        return;
    glideTo(scene.animation, 0.8); // in a window that is out of sight
    QVERIFY(!scene.isRunning());
    QCOMPARE(scene.child.level(), 0.8);
    scene.start.start(kLong);
    QCOMPARE(scene.due.count(), 3);
    QVERIFY(!scene.timer().isActive());
}

void TestAnimation::watcherFollowsTheWidgetAndItsWindow()
{
    QWidget window;
    auto *page = new QWidget(&window);
    auto *child = new QWidget(page);
    const OnScreenWatcher watcher(child);
    const QSignalSpy changed(&watcher, &OnScreenWatcher::changed);
    window.showMinimized();
    QCoreApplication::processEvents();
    QVERIFY(!watcher.isOnScreen());
    window.showNormal();
    QTRY_VERIFY_WITH_TIMEOUT(watcher.isOnScreen(), 10'000);
    window.hide();
    QVERIFY(!watcher.isOnScreen());
    window.show();
    QVERIFY(watcher.isOnScreen());
    window.showMinimized();
    QTRY_VERIFY_WITH_TIMEOUT(!watcher.isOnScreen(), 10'000);
    window.showNormal();
    QTRY_VERIFY_WITH_TIMEOUT(watcher.isOnScreen(), 10'000);
    page->hide();
    QVERIFY(!watcher.isOnScreen());
    window.showMinimized();
    window.showNormal();
    QCoreApplication::processEvents();
    QVERIFY(!watcher.isOnScreen()); // the page is still hidden
    page->show();
    QVERIFY(watcher.isOnScreen());
    QCOMPARE(changed.count(), 7);
    for (int i = 0; i < changed.count(); ++i)
        QCOMPARE(changed[i].first().toBool(), i % 2 == 0);
}

void TestAnimation::watcherOfAWidgetThatMovesToAnotherWindow()
{
    QWidget first;
    QWidget second;
    auto *child = new QWidget(&first);
    const OnScreenWatcher &watcher = *new OnScreenWatcher(child);
    first.show();
    second.show();
    child->setParent(&second);
    QVERIFY(!watcher.isOnScreen());
    child->show();
    QVERIFY(watcher.isOnScreen());
    first.showMinimized();
    QCoreApplication::processEvents();
    QVERIFY(watcher.isOnScreen());
    second.showMinimized();
    QTRY_VERIFY_WITH_TIMEOUT(!watcher.isOnScreen(), 10'000);
    second.showNormal();
    QTRY_VERIFY_WITH_TIMEOUT(watcher.isOnScreen(), 10'000);
    delete child;
}

QTEST_MAIN(TestAnimation)
#include "tst_animation.moc"
