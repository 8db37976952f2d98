// A page that goes out looks as it did when it was told to go, whatever is reset on it meanwhile.
// Run at several pixel ratios, as the picture of it is made for that of the screen.

#include "pages/manualclock.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/look.h"
#include "wizard/installerpane.h"

#include <QGraphicsOpacityEffect>
#include <QLabel>
#include <QPainter>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize kWindowSize(680, 474);
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

struct Scene
{
    explicit Scene(bool shown = true)
    {
        window.resize(kWindowSize);
        pane = new InstallerPane(&window);
        pane->setGeometry(QRect(kPaneCorner, kPageSize));
        for (QWidget **page : { &first, &second }) {
            *page = new QWidget;
            pane->addPage(*page);
        }
        box = new RedBox(first);
        box->setGeometry(kBox);
        label = new QLabel(u"It is 100% done & looks the same."_s, first);
        label->setGeometry(40, 200, 380, 30);
        (new Sample(first))->setGeometry(40, 250, 311, 90);
        if (shown)
            window.show();
        pane->setCurrentPage(first, false);
    }

    /// What becomes of a page that is left.
    void reset() const
    {
        box->hide();
        label->setText(u"0%"_s);
    }

    [[nodiscard]] QImage picture() { return grabWidget(window, window.devicePixelRatioF()); }

    [[nodiscard]] double opacity() const
    {
        const auto *effect = qobject_cast<QGraphicsOpacityEffect *>(first->graphicsEffect());
        return effect ? effect->opacity() : 1.0;
    }

    QWidget window;
    InstallerPane *pane;
    QWidget *first;
    QWidget *second;
    QWidget *box;
    QLabel *label;
};

} // namespace

class TestInstallerPaneLastLook : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { qunsetenv("VARNEL_REDUCED_MOTION"); }
    void nothingJumps();
    void fadesAsItWas_data();
    void fadesAsItWas();
    void fadesAtAnotherRatio();
    void firstLookCounts();
    void withoutPreparation();
    void comesBackAsItIs();
    void inTheMiddleOfATransition();
    void samePageIsNoPicture();
    void noPictureWithoutMotion();
    void nestedEffect();
};

void TestInstallerPaneLastLook::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

// To the last pixel, from the page to its picture.
void TestInstallerPaneLastLook::nothingJumps()
{
    const ManualClock clock;
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        Scene scene;
        const QImage before = scene.picture();
        scene.pane->prepareToShow(scene.second);
        QVERIFY(scene.picture() == before);
        scene.reset();
        QVERIFY(scene.picture() == before);
        scene.pane->setCurrentPage(scene.second, true);
        QVERIFY(scene.picture() == before);
    }
}

void TestInstallerPaneLastLook::fadesAsItWas_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void TestInstallerPaneLastLook::fadesAsItWas()
{
    QFETCH(bool, dark);
    ThemeManager::instance().setDarkMode(dark);
    const QColor ground = themedColor(u"@INS_BG"_s);
    ManualClock clock;
    Scene scene;
    scene.pane->prepareToShow(scene.second);
    scene.reset();
    QVERIFY(!scene.box->isVisible());
    scene.pane->setCurrentPage(scene.second, true);
    for (int step = 0; step < 4; ++step) {
        clock.pass(40);
        const QImage picture = scene.picture();
        const QColor faded = blended(Qt::red, scene.opacity(), ground);
        const QRectF box = QRectF(kBox).translated(kPaneCorner + scene.first->pos());
        for (const QPointF &inside :
             { box.topLeft() + QPointF(2, 2), box.center(), box.bottomRight() - QPointF(2, 2) })
            QCOMPARE(difference(colourAt(picture, inside), faded, 2), QString());
        for (const QPointF &outside :
             { box.topLeft() - QPointF(2, 2), box.bottomRight() + QPointF(2, 2) })
            QCOMPARE(difference(colourAt(picture, outside), ground, 2), QString());
    }
    clock.pass(200);
    QVERIFY(!scene.first->isVisible());
    QVERIFY(!scene.first->graphicsEffect());
}

// The window may be on its way to another screen.
void TestInstallerPaneLastLook::fadesAtAnotherRatio()
{
    ManualClock clock;
    Scene scene;
    scene.pane->setCurrentPage(scene.second, true);
    clock.pass(60);
    const QColor faded = blended(Qt::red, scene.opacity(), themedColor(u"@INS_BG"_s));
    for (double ratio : { 1.0, 1.5, 3.0 }) {
        const QImage picture = grabWidget(scene.window, ratio);
        const QRectF box = QRectF(kBox).translated(kPaneCorner + scene.first->pos());
        for (const QPointF &inside : { box.topLeft() + QPointF(2, 2), box.center() })
            QCOMPARE(difference(colourAt(picture, inside), faded, 3), QString());
        QCOMPARE(difference(colourAt(picture, box.bottomRight() + QPointF(3, 3)),
                            themedColor(u"@INS_BG"_s), 3),
                 QString());
    }
}

void TestInstallerPaneLastLook::firstLookCounts()
{
    const ManualClock clock;
    Scene scene;
    const QImage before = scene.picture();
    scene.pane->prepareToShow(scene.second);
    scene.reset();
    scene.pane->prepareToShow(scene.second);
    scene.pane->setCurrentPage(scene.second, true);
    QVERIFY(scene.picture() == before);
}

// It then goes out as it looks when the other one comes.
void TestInstallerPaneLastLook::withoutPreparation()
{
    const ManualClock clock;
    Scene scene;
    const QImage before = scene.picture();
    scene.pane->setCurrentPage(scene.second, true);
    scene.reset();
    QVERIFY(scene.picture() == before);
}

void TestInstallerPaneLastLook::comesBackAsItIs()
{
    ManualClock clock;
    Scene scene;
    scene.pane->prepareToShow(scene.second);
    scene.reset();
    const QPointF middle = QRectF(kBox.translated(kPaneCorner)).center();
    scene.pane->setCurrentPage(scene.second, true);
    clock.pass(100);
    scene.pane->setCurrentPage(scene.first, true);
    QCOMPARE(colourAt(scene.picture(), middle), themedColor(u"@INS_BG"_s));
    clock.pass(320);
    QVERIFY(scene.first->isVisible());
    QCOMPARE(colourAt(scene.picture(), middle), themedColor(u"@INS_BG"_s));
}

// A page that is left on its way in goes out from where it would have come to rest.
void TestInstallerPaneLastLook::inTheMiddleOfATransition()
{
    ManualClock clock;
    Scene scene;
    const QImage atRest = scene.picture();
    scene.pane->setCurrentPage(scene.second, false);
    scene.pane->setCurrentPage(scene.first, true);
    clock.pass(100);
    scene.pane->prepareToShow(scene.second);
    scene.reset();
    scene.pane->setCurrentPage(scene.second, true);
    QVERIFY(scene.picture() == atRest);
}

void TestInstallerPaneLastLook::samePageIsNoPicture()
{
    ManualClock clock;
    Scene scene;
    scene.pane->prepareToShow(scene.first);
    QVERIFY(!scene.first->graphicsEffect());
    scene.reset();
    scene.pane->setCurrentPage(scene.first, true);
    clock.pass(160);
    QCOMPARE(colourAt(scene.picture(), QRectF(kBox.translated(kPaneCorner)).center()),
             themedColor(u"@INS_BG"_s));
}

void TestInstallerPaneLastLook::noPictureWithoutMotion()
{
    const auto jumps = [](Scene &scene) {
        scene.pane->prepareToShow(scene.second);
        const bool hasPicture = scene.first->graphicsEffect() != nullptr;
        scene.reset();
        scene.pane->setCurrentPage(scene.second, true);
        return !hasPicture && !scene.first->isVisibleTo(scene.pane)
            && scene.second->isVisibleTo(scene.pane) && !scene.second->graphicsEffect();
    };
    Scene hidden;
    hidden.window.hide();
    QVERIFY(jumps(hidden));
    Scene minimised;
    minimised.window.showMinimized();
    QVERIFY(jumps(minimised));
    qputenv("VARNEL_REDUCED_MOTION", "1");
    Scene reduced;
    QVERIFY(jumps(reduced));
}

// Part of a page may be fading in just when it is left.
void TestInstallerPaneLastLook::nestedEffect()
{
    const ManualClock clock;
    Scene scene;
    auto *effect = new QGraphicsOpacityEffect(scene.box);
    effect->setOpacity(0.5);
    scene.box->setGraphicsEffect(effect);
    const QImage before = scene.picture();
    scene.pane->prepareToShow(scene.second);
    effect->setOpacity(0.0);
    scene.pane->setCurrentPage(scene.second, true);
    QVERIFY(scene.picture() == before);
}

QTEST_MAIN(TestInstallerPaneLastLook)
#include "tst_installerpane_lastlook.moc"
