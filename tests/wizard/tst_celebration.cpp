#include "pages/strictwarnings.h"
#include "pages/timerwatch.h"
#include "theme/thememanager.h"
#include "widgets/confettioverlay.h"
#include "widgets/sealcheck.h"
#include "wizard/celebration.h"

#include <QLabel>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kDelay = 300; // ms
constexpr int kPatience = 10'000; // ms

struct Window
{
    Window()
    {
        window.resize(680, 474);
        label = new QLabel(u"Above"_s, &window);
        first = new SealCheck(&window);
        first->setGeometry(218, 54, 46, 46);
        second = new SealCheck(&window);
        second->setGeometry(300, 200, 46, 46);
        celebration = new Celebration(&window);
        overlay = window.findChild<ConfettiOverlay *>();
        window.show();
    }

    QWidget window;
    QLabel *label;
    SealCheck *first;
    SealCheck *second;
    Celebration *celebration;
    ConfettiOverlay *overlay;
};

} // namespace

class TestCelebration : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void liesBelowUntilItStarts();
    void startsWithTheSealAndThenBursts();
    void startingAgainDelaysTheBurst();
    void stopCallsTheBurstOff();
    void stopLeavesPiecesInTheAirAlone();
};

void TestCelebration::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestCelebration::liesBelowUntilItStarts()
{
    const Window world;
    QCOMPARE(world.celebration->parent(), &world.window);
    QVERIFY(!world.overlay->isVisible());
    QCOMPARE(world.overlay->geometry(), world.window.rect());
    QVERIFY(world.window.children().indexOf(world.overlay)
            < world.window.children().indexOf(world.label));
    world.celebration->stop();
    QCOMPARE(world.first->circleProgress(), 0.0);
}

void TestCelebration::startsWithTheSealAndThenBursts()
{
    TimerWatch watch;
    const Window world;
    world.celebration->start(world.first);
    QVERIFY(!world.overlay->isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(world.first->circleProgress() > 0.0, kPatience);
    QTRY_VERIFY_WITH_TIMEOUT(world.overlay->isVisible(), kPatience);
    QCOMPARE(watch.shots().count(kDelay), 1);
    QCOMPARE(world.overlay->pieceCount(), 110);
    QCOMPARE(world.second->circleProgress(), 0.0);
    QCOMPARE(world.window.children().last(), world.overlay);
}

void TestCelebration::startingAgainDelaysTheBurst()
{
    TimerWatch watch;
    const Window world;
    world.celebration->start(world.first);
    world.celebration->start(world.second);
    QTRY_VERIFY_WITH_TIMEOUT(world.overlay->isVisible(), kPatience);
    QCOMPARE(watch.shots().count(kDelay), 1);
    QVERIFY(world.second->circleProgress() > 0.0);
}

void TestCelebration::stopCallsTheBurstOff()
{
    TimerWatch watch;
    const Window world;
    world.celebration->start(world.first);
    world.celebration->stop();
    QTimer later;
    later.setSingleShot(true);
    later.start(kDelay + 200);
    QTRY_VERIFY_WITH_TIMEOUT(!later.isActive(), kPatience);
    QVERIFY(!watch.shots().contains(kDelay));
    QVERIFY(!world.overlay->isVisible());
}

void TestCelebration::stopLeavesPiecesInTheAirAlone()
{
    const Window world;
    world.celebration->start(world.first);
    QTRY_VERIFY_WITH_TIMEOUT(world.overlay->isVisible(), kPatience);
    world.celebration->stop();
    QVERIFY(world.overlay->isVisible());
    QCOMPARE(world.overlay->pieceCount(), 110);
    QTRY_VERIFY_WITH_TIMEOUT(!world.overlay->isVisible(), kPatience);
}

QTEST_MAIN(TestCelebration)
#include "tst_celebration.moc"
