// How pages come and go. A page that goes out looks as it did when the next one was asked for,
// whatever is reset on it meanwhile. Run at several pixel ratios, as the picture of it is made for
// that of the screen.

#include "pages/manualclock.h"
#include "pages/pagetext.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/look.h"
#include "wizard/installerpane.h"
#include "wizard/wizardtest.h"

#include <QEasingCurve>
#include <QGraphicsOpacityEffect>
#include <QPainter>
#include <QVBoxLayout>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QRect kFull(QPoint(0, 0), kPageSize);
constexpr QPoint kPaneCorner(196, 36); // as in the wizard; at fractional ratios between two pixels
constexpr QRect kBox(40, 100, 200, 60);

/// All that looks different when it begins a fraction of a pixel further on.
class Sample : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(QColor(0, 90, 160, 120));
        painter.drawEllipse(QRectF(rect()).adjusted(3.3, 3.3, -3.7, -3.7));
        painter.drawLine(QPointF(0, 0), QPointF(width(), height()));
        painter.drawRect(QRectF(10, 10, 21, 13));
    }
};

/// Not filled by Qt, so that it counts as see-through like all on the real pages.
class RedBox : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *) override { QPainter(this).fillRect(rect(), Qt::red); }
};

double opacityOf(const QWidget *page)
{
    const auto *effect = qobject_cast<QGraphicsOpacityEffect *>(page->graphicsEffect());
    return effect ? effect->opacity() : 1.0;
}

/// A pane in a window, on its first page of three.
struct Scene
{
    Scene()
    {
        window.resize(680, 474);
        pane = new InstallerPane(&window);
        pane->setGeometry(QRect(kPaneCorner, kPageSize));
        for (QWidget **page : { &a, &b, &c }) {
            *page = new QWidget;
            pane->addPage(*page);
        }
        box = new RedBox(a);
        box->setGeometry(kBox);
        label = new QLabel(u"It is 100% done & looks the same."_s, a);
        label->setGeometry(40, 200, 380, 30);
        (new Sample(a))->setGeometry(40, 250, 311, 90);
        window.show();
        pane->setCurrentPage(a, true);
    }

    /// `page` alone is visible, in all of the pane, and no page has an effect.
    [[nodiscard]] bool restsOn(const QWidget *page) const
    {
        for (const QWidget *other : { a, b, c }) {
            if (other->isVisibleTo(pane) != (other == page) || other->graphicsEffect())
                return false;
        }
        return page->geometry() == kFull;
    }
    /// What becomes of the first page when it is left.
    void reset() const
    {
        box->hide();
        label->setText(u"0%"_s);
    }
    [[nodiscard]] QImage picture() { return grabWidget(window, window.devicePixelRatioF()); }
    /// Empty if `picture` shows the box as faded as its page, with nothing around it.
    [[nodiscard]] QString unlikeTheBox(const QImage &picture, int tolerance) const
    {
        const QColor ground = themedColor(u"@INS_BG"_s);
        const QColor faded = blended(Qt::red, opacityOf(a), ground);
        const QRectF place = QRectF(kBox).translated(kPaneCorner + a->pos());
        return difference(colourAt(picture, place.topLeft() + QPointF(2, 2)), faded, tolerance)
            + difference(colourAt(picture, place.bottomRight() - QPointF(2, 2)), faded, tolerance)
            + difference(colourAt(picture, place.topLeft() - QPointF(3, 3)), ground, tolerance)
            + difference(colourAt(picture, place.bottomRight() + QPointF(3, 3)), ground, tolerance);
    }
    /// The colour where the box is on the first page at rest.
    [[nodiscard]] QColor middleOfTheBox()
    {
        return colourAt(picture(), QRectF(kBox.translated(kPaneCorner)).center());
    }

    QWidget window;
    InstallerPane *pane;
    QWidget *a;
    QWidget *b;
    QWidget *c;
    QWidget *box;
    QLabel *label;
};

} // namespace

class TestInstallerPane : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void pageIsLaidOutWhenItIsShown();
    void transition();
    void changeDuringTransition();
    void samePageComesInOnceMore();
    void noMotion_data();
    void noMotion();
    void pictureLooksLikeThePage();
    void fadesAsItWas();
    void leftAndEnteredOnItsWay();
};

void TestInstallerPane::pageIsLaidOutWhenItIsShown()
{
    const Scene scene;
    auto *page = new QWidget;
    auto *inner = new QWidget;
    auto *label = new QWidget;
    (new QVBoxLayout(page))->addWidget(inner);
    (new QVBoxLayout(inner))->addWidget(label);
    scene.pane->addPage(page);
    const QRect before = label->geometry();
    scene.pane->grab(); // which asks for everything to be where it belongs
    QCOMPARE(label->geometry(), before);

    scene.pane->setCurrentPage(page, true);
    QVERIFY(page->contentsRect().contains(inner->geometry()));
    QVERIFY(inner->contentsRect().contains(label->geometry()));
    QVERIFY(label->width() > kPageSize.width() - 80);
}

void TestInstallerPane::transition()
{
    const QEasingCurve curve(QEasingCurve::OutCubic);
    ManualClock clock;
    const Scene scene;
    QVERIFY(scene.restsOn(scene.a));
    for (int time = 0; time < 320; time += 40) {
        if (time == 0)
            scene.pane->setCurrentPage(scene.b, true);
        else
            clock.pass(40);
        const double in = curve.valueForProgress(time / 320.0);
        const double out = curve.valueForProgress(std::min(time / 200.0, 1.0));
        QVERIFY(scene.a->isVisible() && scene.b->isVisible());
        QVERIFY(std::abs(opacityOf(scene.b) - in) < 0.02);
        QVERIFY(std::abs(opacityOf(scene.a) - (1.0 - out)) < 0.02);
        QVERIFY(std::abs(scene.b->x() - 14 * (1.0 - in)) <= 1.0);
        QVERIFY(std::abs(scene.a->x() + 14 * out) <= 1.0);
    }
    clock.pass(40);
    QVERIFY(scene.restsOn(scene.b));

    // The page that went comes back to its place, above the others.
    scene.pane->setCurrentPage(scene.a, true);
    const QObjectList &pages = scene.pane->children();
    QVERIFY(pages.indexOf(scene.a) > pages.indexOf(scene.b));
    clock.pass(320);
    QVERIFY(scene.restsOn(scene.a));
}

void TestInstallerPane::changeDuringTransition()
{
    ManualClock clock;
    for (int moment : { 0, 120, 250 }) {
        const bool back = moment == 120;
        const Scene scene;
        scene.pane->setCurrentPage(scene.b, true);
        clock.pass(moment);
        QWidget *last = back ? scene.a : scene.c;
        const QWidget *gone = back ? scene.c : scene.a;
        scene.pane->setCurrentPage(last, true);
        // The earlier transition has ended; the later one starts from where that would have led.
        QVERIFY(!gone->isVisible());
        QVERIFY(!gone->graphicsEffect());
        QCOMPARE(scene.b->geometry(), kFull);
        QCOMPARE(opacityOf(scene.b), 1.0);
        QCOMPARE(last->geometry(), kFull.translated(14, 0));
        clock.pass(320);
        QVERIFY(scene.restsOn(last));
        scene.pane->setCurrentPage(scene.b, true); // and the pane goes away in the middle of it
    }
    clock.pass(320);
}

// It is never hidden, which would take the focus from it.
void TestInstallerPane::samePageComesInOnceMore()
{
    ManualClock clock;
    Scene scene;
    int hides = 0;
    const EventWatch watch(scene.a, QEvent::Hide, [&hides] { ++hides; });
    scene.pane->prepareToShow(scene.a);
    QVERIFY(!scene.a->graphicsEffect()); // there is no picture of a page that stays
    scene.reset();
    scene.pane->setCurrentPage(scene.a, true);
    QCOMPARE(scene.a->geometry(), kFull.translated(14, 0));
    QCOMPARE(opacityOf(scene.a), 0.0);
    clock.pass(160);
    QVERIFY(opacityOf(scene.a) > 0.8 && opacityOf(scene.a) < 1.0);
    QCOMPARE(scene.middleOfTheBox(), themedColor(u"@INS_BG"_s));
    scene.pane->setCurrentPage(scene.a, true);
    clock.pass(320);
    QVERIFY(scene.restsOn(scene.a));
    QCOMPARE(hides, 0);
}

void TestInstallerPane::noMotion_data()
{
    QTest::addColumn<QString>("why");
    for (const char *why : { "hidden", "minimised", "reduced motion", "not animated" })
        QTest::newRow(why) << QString::fromLatin1(why);
}

void TestInstallerPane::noMotion()
{
    QFETCH(QString, why);
    if (why == u"reduced motion")
        qputenv("VARNEL_REDUCED_MOTION", "1");
    Scene scene;
    if (why == u"hidden")
        scene.window.hide();
    if (why == u"minimised")
        scene.window.showMinimized();
    const bool animated = why != u"not animated";
    for (QWidget *page : { scene.b, scene.a, scene.a }) {
        if (animated)
            scene.pane->prepareToShow(page);
        QVERIFY(!scene.a->graphicsEffect() && !scene.b->graphicsEffect());
        scene.pane->setCurrentPage(page, animated);
        QVERIFY(scene.restsOn(page));
    }
}

// To the last pixel, from the page to its picture.
void TestInstallerPane::pictureLooksLikeThePage()
{
    const ManualClock clock;
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        Scene scene;
        auto *effect = new QGraphicsOpacityEffect(scene.box);
        effect->setOpacity(dark ? 1.0 : 0.5); // part of a page may just be fading in
        scene.box->setGraphicsEffect(effect);
        const QImage before = scene.picture();
        scene.pane->prepareToShow(scene.b);
        QVERIFY(scene.picture() == before);
        scene.reset();
        QVERIFY(scene.picture() == before);
        scene.pane->prepareToShow(scene.b); // the earliest picture counts
        scene.pane->setCurrentPage(scene.b, true);
        QVERIFY(scene.picture() == before);
    }
}

void TestInstallerPane::fadesAsItWas()
{
    ThemeManager::instance().setDarkMode(true);
    ManualClock clock;
    Scene scene;
    scene.pane->prepareToShow(scene.b);
    scene.reset();
    QVERIFY(!scene.box->isVisible());
    scene.pane->setCurrentPage(scene.b, true);
    for (int step = 0; step < 4; ++step) {
        clock.pass(40);
        QCOMPARE(scene.unlikeTheBox(scene.picture(), 2), QString());
        // Also on the way to a screen of another ratio.
        for (double ratio : { 1.0, 1.5, 3.0 })
            QCOMPARE(scene.unlikeTheBox(grabWidget(scene.window, ratio), 3), QString());
    }
    clock.pass(200);
    QVERIFY(scene.restsOn(scene.b));
}

// A page that is left goes out from where it would have come to rest, and comes back as it is.
void TestInstallerPane::leftAndEnteredOnItsWay()
{
    ManualClock clock;
    Scene scene;
    const QImage atRest = scene.picture();
    scene.pane->setCurrentPage(scene.b, false);
    scene.pane->setCurrentPage(scene.a, true);
    clock.pass(100);
    scene.pane->prepareToShow(scene.b);
    scene.reset();
    scene.pane->setCurrentPage(scene.b, true);
    QVERIFY(scene.picture() == atRest);
    clock.pass(100);
    scene.pane->setCurrentPage(scene.a, true);
    QCOMPARE(scene.middleOfTheBox(), themedColor(u"@INS_BG"_s));
    clock.pass(320);
    QVERIFY(scene.a->isVisible());
    QCOMPARE(scene.middleOfTheBox(), themedColor(u"@INS_BG"_s));
}

QTEST_MAIN(TestInstallerPane)
#include "tst_installerpane.moc"
