#include "pages/manualclock.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "wizard/installerpane.h"
#include "wizard/onscreen.h"

#include <QEasingCurve>
#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QPropertyAnimation>
#include <QTest>
#include <QVBoxLayout>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QRect kFull(QPoint(0, 0), kPageSize);

/// Counts how often a widget is hidden.
class HideCounter : public QObject
{
public:
    explicit HideCounter(QWidget *watched) { watched->installEventFilter(this); }

    int count = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Hide ? 1 : 0;
        return false;
    }
};

double opacityOf(const QWidget *page)
{
    const auto *effect = qobject_cast<QGraphicsOpacityEffect *>(page->graphicsEffect());
    return effect ? effect->opacity() : 1.0;
}

double eased(double progress)
{
    return QEasingCurve(QEasingCurve::OutCubic).valueForProgress(progress);
}

struct Pane : public InstallerPane
{
    Pane()
    {
        resize(kPageSize);
        for (QWidget **page : { &a, &b, &c }) {
            *page = new QWidget;
            addPage(*page);
        }
        show();
    }

    /// `page` alone is visible, at the full rectangle, and no page has an effect.
    [[nodiscard]] bool restsOn(const QWidget *page) const
    {
        for (const QWidget *other : { a, b, c }) {
            if (other->isVisible() != (other == page) || other->graphicsEffect())
                return false;
        }
        return page->geometry() == kFull && currentPage() == page;
    }

    QWidget *a;
    QWidget *b;
    QWidget *c;
};

} // namespace

class TestInstallerPane : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void addedPageIsHiddenAndFillsThePane();
    void pageIsLaidOutWhenItIsShown();
    void firstPageComesWithoutTransition();
    void withoutAnimationThePagesJustSwap();
    void transitionIsMadeAsItShould();
    void transitionOnItsWay();
    void endOfTransition();
    void changeDuringTransition_data();
    void changeDuringTransition();
    void changeWithoutAnimationDuringTransition();
    void samePageComesInOnceMore();
    void samePageIsNeverHidden();
    void runsByItself();
    void incomingPageLiesOnTop();
    void reducedMotionJumps();
    void resizeReachesThePages();
    void goesAwayDuringTransition();
    void painting();
    void themeChangeRepaints();
};

void TestInstallerPane::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestInstallerPane::addedPageIsHiddenAndFillsThePane()
{
    InstallerPane pane;
    pane.resize(kPageSize);
    pane.show();
    QWidget elsewhere;
    auto *page = new QWidget(&elsewhere);
    page->setGeometry(30, 40, 50, 60);
    elsewhere.show();
    pane.addPage(page);
    QCOMPARE(page->parentWidget(), &pane);
    QCOMPARE(page->geometry(), kFull);
    QVERIFY(!page->isVisible());
    QCOMPARE(pane.currentPage(), nullptr);
}

void TestInstallerPane::pageIsLaidOutWhenItIsShown()
{
    Pane pane;
    pane.setCurrentPage(pane.a, true);
    auto *page = new QWidget;
    auto *inner = new QWidget;
    auto *label = new QWidget;
    (new QVBoxLayout(page))->addWidget(inner);
    (new QVBoxLayout(inner))->addWidget(label);
    pane.addPage(page);
    const QRect before = label->geometry();
    pane.grab(); // which asks for everything to be where it belongs
    QCOMPARE(label->geometry(), before);

    pane.setCurrentPage(page, true);
    QVERIFY(page->contentsRect().contains(inner->geometry()));
    QVERIFY(inner->width() > kPageSize.width() - 40);
    QVERIFY(inner->contentsRect().contains(label->geometry()));
    QVERIFY(label->width() > kPageSize.width() - 80);
}

void TestInstallerPane::firstPageComesWithoutTransition()
{
    Pane pane;
    pane.setCurrentPage(pane.a, true);
    QVERIFY(pane.restsOn(pane.a));
    QVERIFY(!pane.findChild<QParallelAnimationGroup *>());
}

void TestInstallerPane::withoutAnimationThePagesJustSwap()
{
    Pane pane;
    pane.setCurrentPage(pane.a, false);
    QVERIFY(pane.restsOn(pane.a));
    pane.setCurrentPage(pane.b, false);
    QVERIFY(pane.restsOn(pane.b));
    pane.setCurrentPage(pane.b, false);
    QVERIFY(pane.restsOn(pane.b));
    QVERIFY(!pane.findChild<QParallelAnimationGroup *>());
}

void TestInstallerPane::transitionIsMadeAsItShould()
{
    ManualClock clock;
    Pane pane;
    pane.setCurrentPage(pane.a, true);
    pane.setCurrentPage(pane.b, true);
    const auto groups = pane.findChildren<QParallelAnimationGroup *>();
    QCOMPARE(groups.size(), 1);
    QCOMPARE(groups.first()->parent(), &pane);
    QCOMPARE(groups.first()->animationCount(), 4);

    struct Expected
    {
        QObject *target;
        QByteArray property;
        int duration;
        QVariant from;
        QVariant to;
    };
    const QList<Expected> expected {
        { pane.b->graphicsEffect(), "opacity", 320, 0.0, 1.0 },
        { pane.b, "geometry", 320, kFull.translated(14, 0), kFull },
        { pane.a->graphicsEffect(), "opacity", 200, 1.0, 0.0 },
        { pane.a, "geometry", 200, kFull, kFull.translated(-14, 0) },
    };
    for (const Expected &wanted : expected) {
        bool found = false;
        for (auto *animation : groups.first()->findChildren<QPropertyAnimation *>()) {
            if (animation->targetObject() != wanted.target
                || animation->propertyName() != wanted.property)
                continue;
            found = true;
            QCOMPARE(animation->duration(), wanted.duration);
            QCOMPARE(animation->easingCurve().type(), QEasingCurve::OutCubic);
            QCOMPARE(animation->startValue(), wanted.from);
            QCOMPARE(animation->endValue(), wanted.to);
        }
        QVERIFY2(found, wanted.property);
    }
}

void TestInstallerPane::transitionOnItsWay()
{
    ManualClock clock;
    Pane pane;
    pane.setCurrentPage(pane.a, true);
    pane.setCurrentPage(pane.b, true);
    QCOMPARE(pane.currentPage(), pane.b);
    QCOMPARE(pane.b->geometry(), kFull.translated(14, 0));
    QCOMPARE(opacityOf(pane.b), 0.0);
    QCOMPARE(opacityOf(pane.a), 1.0);
    QVERIFY(pane.a->isVisible() && pane.b->isVisible());

    clock.pass(100);
    QVERIFY(std::abs(opacityOf(pane.b) - eased(100 / 320.0)) < 0.02);
    QVERIFY(std::abs(opacityOf(pane.a) - (1.0 - eased(0.5))) < 0.02);
    QVERIFY(std::abs(pane.b->x() - 14 * (1.0 - eased(100 / 320.0))) <= 1.0);
    QVERIFY(std::abs(pane.a->x() + 14 * eased(0.5)) <= 1.0);

    clock.pass(100);
    QCOMPARE(opacityOf(pane.a), 0.0);
    QCOMPARE(pane.a->geometry(), kFull.translated(-14, 0));
    QVERIFY(opacityOf(pane.b) < 1.0);
}

void TestInstallerPane::endOfTransition()
{
    ManualClock clock;
    Pane pane;
    pane.setCurrentPage(pane.a, true);
    pane.setCurrentPage(pane.b, true);
    clock.pass(280);
    QVERIFY(!pane.restsOn(pane.b));
    clock.pass(40);
    QVERIFY(pane.restsOn(pane.b));
    QTRY_VERIFY(!pane.findChild<QParallelAnimationGroup *>());

    // And the page that went comes back to its place.
    pane.setCurrentPage(pane.a, true);
    clock.pass(320);
    QVERIFY(pane.restsOn(pane.a));
}

void TestInstallerPane::changeDuringTransition_data()
{
    QTest::addColumn<int>("moment");
    QTest::newRow("at once") << 0;
    QTest::newRow("in the middle") << 120;
    QTest::newRow("with the old page out") << 250;
    QTest::newRow("just before the end") << 310;
}

void TestInstallerPane::changeDuringTransition()
{
    QFETCH(int, moment);
    ManualClock clock;
    for (bool back : { false, true }) {
        Pane pane;
        pane.setCurrentPage(pane.a, true);
        pane.setCurrentPage(pane.b, true);
        clock.pass(moment);
        QWidget *last = back ? pane.a : pane.c;
        QWidget *gone = back ? pane.c : pane.a;
        pane.setCurrentPage(last, true);
        // The earlier transition has ended; the later one starts from where that would have led.
        QVERIFY(!gone->isVisible());
        QVERIFY(!gone->graphicsEffect());
        QCOMPARE(pane.b->geometry(), kFull);
        QCOMPARE(opacityOf(pane.b), 1.0);
        QCOMPARE(last->geometry(), kFull.translated(14, 0));
        clock.pass(320);
        QVERIFY(pane.restsOn(last));
    }
}

void TestInstallerPane::changeWithoutAnimationDuringTransition()
{
    ManualClock clock;
    Pane pane;
    pane.setCurrentPage(pane.a, true);
    pane.setCurrentPage(pane.b, true);
    clock.pass(100);
    pane.setCurrentPage(pane.c, false);
    QVERIFY(pane.restsOn(pane.c));
    clock.pass(320);
    QVERIFY(pane.restsOn(pane.c));
}

void TestInstallerPane::samePageComesInOnceMore()
{
    ManualClock clock;
    Pane pane;
    pane.setCurrentPage(pane.a, true);
    pane.setCurrentPage(pane.a, true);
    QCOMPARE(pane.a->geometry(), kFull.translated(14, 0));
    QCOMPARE(opacityOf(pane.a), 0.0);
    clock.pass(160);
    QVERIFY(std::abs(opacityOf(pane.a) - eased(0.5)) < 0.02);
    clock.pass(160);
    QVERIFY(pane.restsOn(pane.a));
}

void TestInstallerPane::samePageIsNeverHidden()
{
    ManualClock clock;
    Pane pane;
    pane.setCurrentPage(pane.a, true);
    const HideCounter hides(pane.a);
    pane.setCurrentPage(pane.a, true);
    QVERIFY(pane.a->isVisible());
    clock.pass(100);
    pane.setCurrentPage(pane.a, true);
    clock.pass(320);
    QVERIFY(pane.restsOn(pane.a));
    pane.setCurrentPage(pane.a, false);
    QVERIFY(pane.restsOn(pane.a));

    // Also not if it was on its way in.
    pane.setCurrentPage(pane.b, true);
    clock.pass(320);
    pane.setCurrentPage(pane.a, true);
    const int before = hides.count;
    clock.pass(100);
    pane.setCurrentPage(pane.a, true);
    QVERIFY(!pane.b->isVisible());
    clock.pass(320);
    QVERIFY(pane.restsOn(pane.a));
    QCOMPARE(before, 1);
    QCOMPARE(hides.count, 1);
}

void TestInstallerPane::runsByItself()
{
    Pane pane;
    pane.setCurrentPage(pane.a, true);
    pane.setCurrentPage(pane.b, true);
    pane.setCurrentPage(pane.c, true);
    QTRY_VERIFY_WITH_TIMEOUT(pane.restsOn(pane.c), 10'000);
}

void TestInstallerPane::incomingPageLiesOnTop()
{
    ManualClock clock;
    Pane pane;
    for (QWidget *page : { pane.c, pane.a }) {
        pane.setCurrentPage(page, true);
        const QObjectList &children = pane.children();
        for (const QWidget *other : { pane.a, pane.b, pane.c })
            QVERIFY(children.indexOf(page) >= children.indexOf(other));
    }
}

void TestInstallerPane::reducedMotionJumps()
{
    qputenv("VARNEL_REDUCED_MOTION", "1");
    const auto restore = qScopeGuard([] { qunsetenv("VARNEL_REDUCED_MOTION"); });
    Pane pane;
    pane.setCurrentPage(pane.a, true);
    pane.setCurrentPage(pane.b, true);
    QVERIFY(pane.restsOn(pane.b));
    pane.setCurrentPage(pane.b, true);
    QVERIFY(pane.restsOn(pane.b));
}

void TestInstallerPane::resizeReachesThePages()
{
    Pane pane;
    pane.setCurrentPage(pane.a, true);
    pane.resize(500, 400);
    for (const QWidget *page : { pane.a, pane.b, pane.c })
        QCOMPARE(page->geometry(), QRect(0, 0, 500, 400));
}

void TestInstallerPane::goesAwayDuringTransition()
{
    ManualClock clock;
    {
        Pane pane;
        pane.setCurrentPage(pane.a, true);
        pane.setCurrentPage(pane.b, true);
        clock.pass(100);
    }
    clock.pass(400);
}

void TestInstallerPane::painting()
{
    InstallerPane pane;
    pane.resize(kPageSize);
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        QCOMPARE(pixelsUnlike(grabWidget(pane, 1.25), themedColor(u"@INS_BG"_s)), 0);
    }
}

void TestInstallerPane::themeChangeRepaints()
{
    InstallerPane pane;
    pane.resize(kPageSize);
    QVERIFY(repaintsOnThemeChange(pane, { 5, 5 }, u"@INS_BG"_s));
}

QTEST_MAIN(TestInstallerPane)
#include "tst_installerpane.moc"
