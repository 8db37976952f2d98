// What is around the pages: the window's shape, title bar, rail and footer. Their layouts, texts,
// fonts and colours at rest are recorded by tst_pagestructure.

#include "pages/pagetext.h"
#include "support/contrast.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/animatedmark.h"
#include "widgets/paintwatch.h"
#include "wizard/installerfooterbar.h"
#include "wizard/installerpane.h"
#include "wizard/installerrail.h"
#include "wizard/installertitlebar.h"
#include "wizard/windowshape.h"
#include "wizard/wizardtest.h"

#include <QLayout>
#include <QMouseEvent>
#include <QPointer>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kWidth = 680;
constexpr QSize kRailSize(196, 390);

void putPointerOn(QPushButton &button)
{
    button.ensurePolished();
    button.setAttribute(Qt::WA_UnderMouse);
    const QPointF middle = QRectF(button.rect()).center();
    QMouseEvent move(QEvent::MouseMove, middle, button.mapToGlobal(middle), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&button, &move);
}

/// A frameless window with a title bar, not in the screen's corner.
struct Window
{
    Window()
    {
        window.setWindowFlag(Qt::FramelessWindowHint);
        window.resize(kWidth, 474);
        window.move(100, 80);
        bar = new InstallerTitleBar(u"Setup"_s, &window);
        bar->setGeometry(0, 0, kWidth, bar->height());
        window.show();
    }

    /// Sends a mouse event as if the pointer were at `global`.
    bool send(QEvent::Type type, const QPointF &global, Qt::MouseButton button,
              Qt::MouseButtons buttons) const
    {
        QMouseEvent event(type, bar->mapFromGlobal(global), global, button, buttons,
                          Qt::NoModifier);
        event.ignore();
        QCoreApplication::sendEvent(bar, &event);
        return event.isAccepted();
    }

    QWidget window;
    InstallerTitleBar *bar;
};

} // namespace

class TestChrome : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void windowHasRoundCorners();
    void barsHaveRoundCorners();
    void themeChangeRepaints();
    void titleButtonsUnderThePointer();
    void focusRingKeepsInsideTheCorner();
    void dragMovesTheWindow();
    void dragThatBeginsOnAButtonIsIgnored();
    void footerButtons();
    void footerIsClearedByItsButton();
    void markComesInFromTheRailsEdges();
    void railRepaintsThePlaceOfTheMark();
};

// A pixel belongs to the window if its outer corner, and so all of it, does: half a pixel would
// show black.
void TestChrome::windowHasRoundCorners()
{
    const QRegion shape = windowShape();
    QCOMPARE(shape.boundingRect(), QRect(0, 0, 680, 474));
    for (const QRect &gap : QRegion(shape.boundingRect()) - shape)
        QVERIFY(gap.width() <= 11 && (gap.bottom() < 11 || gap.top() >= 474 - 11));
    for (int y = 0; y < 11; ++y) {
        for (int x = 0; x < 11; ++x) {
            const double distance = std::hypot(11 - x, 11 - y);
            if (std::abs(distance - 11) < 0.2)
                continue; // the arc only just touches it
            for (const QPoint &pixel :
                 { QPoint(x, y), QPoint(679 - x, y), QPoint(x, 473 - y), QPoint(679 - x, 473 - y) })
                QCOMPARE(shape.contains(pixel), distance < 11);
        }
    }
}

void TestChrome::barsHaveRoundCorners()
{
    InstallerTitleBar titleBar(u"Setup"_s);
    InstallerFooterBar footer;
    const QColor panel = themedColor(u"@INS_PANEL"_s);
    for (QWidget *bar : QList<QWidget *> { &titleBar, &footer }) {
        const bool isOnTop = bar == &titleBar;
        bar->resize(kWidth, bar->height());
        const double height = bar->height();
        const QImage picture = grabWidget(*bar, 2.0);
        const auto at = [&](double x, double y) {
            return colourAt(picture, { x, isOnTop ? y : height - 0.3 - y });
        };
        // On the diagonal, the corner ends some 3.2 px from the edges.
        for (double x : { 2.0, kWidth - 2.3 })
            QCOMPARE(at(x, 2.0).alpha(), 0);
        for (const QPointF &inside : { QPointF(4.5, 4.5), QPointF(kWidth - 5.0, 4.5),
                                       QPointF(11.5, 0.3), QPointF(0.3, 11.5) })
            QCOMPARE(at(inside.x(), inside.y()), panel);
        // The corners at the other end are square.
        for (double x : { 0.3, kWidth - 0.3 })
            QCOMPARE(at(x, height - 1.8), panel);
    }
}

// By itself and on screen; the recorded pages are drawn anew.
void TestChrome::themeChangeRepaints()
{
    InstallerTitleBar titleBar(u"Setup"_s);
    InstallerRail rail;
    InstallerPane pane;
    InstallerFooterBar footer;
    for (QWidget *part : std::initializer_list<QWidget *> { &titleBar, &rail, &pane, &footer }) {
        part->resize(kRailSize);
        part->show();
        QVERIFY(QTest::qWaitForWindowExposed(part));
        const auto colour = [part] {
            return colourAt(part->screen()->grabWindow(part->winId()).toImage(), { 5.5, 18.0 });
        };
        const QColor before = colour();
        ThemeManager::instance().setDarkMode(true);
        QTRY_VERIFY(colour() != before);
        ThemeManager::instance().setDarkMode(false);
        QTRY_COMPARE(colour(), before);
    }
}

// No red gets into the window's corner.
void TestChrome::titleButtonsUnderThePointer()
{
    InstallerTitleBar bar(u"Setup"_s);
    bar.resize(kWidth, bar.height());
    bar.layout()->activate();
    for (const QString &name : { u"Minimize"_s, u"Close"_s })
        putPointerOn(*named(bar, name));
    const QImage picture = grabWidget(bar, 2.0);
    QCOMPARE(colourAt(picture, { kWidth - 70.0, 17.0 }), themedColor(u"@INS_LINE"_s));
    QCOMPARE(colourAt(picture, { kWidth - 30.0, 17.0 }), QColor(0xd6, 0x3b, 0x32));
    QCOMPARE(colourAt(picture, { kWidth - 39.5, 0.5 }), QColor(0xd6, 0x3b, 0x32));
    QCOMPARE(colourAt(picture, { kWidth - 2.0, 2.0 }).alpha(), 0);
}

void TestChrome::focusRingKeepsInsideTheCorner()
{
    constexpr double ratio = 2.0;
    InstallerTitleBar bar(u"Setup"_s);
    bar.resize(kWidth, bar.height());
    bar.show();
    QVERIFY(QTest::qWaitForWindowActive(&bar));
    QPushButton *close = named(bar, u"Close"_s);
    named(bar, u"Minimize"_s)->setFocus(Qt::OtherFocusReason);
    const QImage before = grabWidget(bar, ratio);
    close->setFocus(Qt::TabFocusReason);
    const QImage after = grabWidget(bar, ratio);

    const QPointF centre(kWidth - kCornerRadius, kCornerRadius); // of the corner's arc
    for (double y = 0.25; y < kCornerRadius; y += 0.5) {
        for (double x = kWidth - kCornerRadius + 0.25; x < kWidth; x += 0.5) {
            if (std::hypot(x - centre.x(), y - centre.y()) > kCornerRadius)
                QCOMPARE(colourAt(after, { x, y }), colourAt(before, { x, y }));
        }
    }
    const QRectF button = close->geometry();
    for (const QPointF &place : { QPointF(button.center().x(), button.bottom() - 2.75),
                                  QPointF(button.right() - 2.75, button.center().y()) })
        QCOMPARE(colourAt(after, place), themedColor(u"@INS_ACCENT"_s));
}

void TestChrome::dragMovesTheWindow()
{
    const Window world;
    const QPoint start = world.window.pos();
    const QPointF grip = start + QPointF(200.6, 20.4); // counts as (201, 20)
    QVERIFY(!world.send(QEvent::MouseButtonPress, grip, Qt::RightButton, Qt::RightButton));
    QVERIFY(!world.send(QEvent::MouseMove, start, Qt::NoButton, Qt::RightButton));
    QVERIFY(world.send(QEvent::MouseButtonPress, grip, Qt::LeftButton, Qt::LeftButton));
    QCOMPARE(world.window.pos(), start);
    const QPoint place = start + QPoint(201, 20);
    const QPoint way(30, 10);
    QVERIFY(world.send(QEvent::MouseMove, place + way, Qt::NoButton, Qt::LeftButton));
    // Now the system is asked to go on, which this one cannot.
    TimerWatch watch;
    QTRY_VERIFY_WITH_TIMEOUT(watch.shots().contains(20), kPatience);
    for (const QPoint &to : { way, QPoint(-50, 40), way }) {
        QVERIFY(world.send(QEvent::MouseMove, place + to, Qt::NoButton, Qt::LeftButton));
        QCOMPARE(world.window.pos(), start + to);
    }
    // Another button that is released on the way does not end it.
    world.send(QEvent::MouseButtonRelease, place + way, Qt::RightButton, Qt::LeftButton);
    world.send(QEvent::MouseMove, place + 2 * way, Qt::NoButton, Qt::LeftButton);
    QCOMPARE(world.window.pos(), start + 2 * way);
    QVERIFY(world.send(QEvent::MouseButtonRelease, place + 2 * way, Qt::LeftButton, Qt::NoButton));
    QVERIFY(!world.send(QEvent::MouseMove, place + 3 * way, Qt::NoButton, Qt::LeftButton));
    QCOMPARE(world.window.pos(), start + 2 * way);
}

// With the mouse itself: a button passes the moves of a pointer that has left it to its bar.
void TestChrome::dragThatBeginsOnAButtonIsIgnored()
{
    Window world;
    QWindow *window = world.window.windowHandle();
    QPoint start = world.window.pos();
    const auto drag = [window](const QPoint &from, const QPoint &way) {
        QTest::mousePress(window, Qt::LeftButton, {}, from);
        QTest::mouseMove(window, from + way / 2);
        QTest::mouseMove(window, from + way);
        QTest::mouseRelease(window, Qt::LeftButton, {}, from + way);
    };
    for (const QString &name : { u"Minimize"_s, u"Close"_s }) {
        const QPoint middle = named(*world.bar, name)->geometry().center();
        for (const QPoint &way : { QPoint(-300, 10), QPoint(0, 200) }) {
            drag(middle, way);
            QCOMPARE(world.window.pos(), start);
        }
        drag({ 200, 20 }, { 6, 0 }); // of which nothing is left for the next button
        QVERIFY(world.window.pos() != start);
        start = world.window.pos();
    }
}

void TestChrome::footerButtons()
{
    struct Variant
    {
        bool primary;
        bool danger;
        QString background; // under the pointer
        QString border;
    };
    const QList<Variant> variants {
        { false, false, u"@INS_PANEL"_s, u"@INS_TX3"_s },
        { true, false, u"@INS_ACCENT_HOVER"_s, u"@INS_ACCENT_HOVER"_s },
        { false, true, u"@INS_RED"_s, u"@INS_RED"_s }, // a destructive button does not light up
    };
    for (int i = 0; i < 2 * variants.size(); ++i) {
        const Variant &variant = variants[i / 2];
        ThemeManager::instance().setDarkMode(i % 2);
        InstallerFooterBar bar;
        bar.resize(kWidth, bar.height());
        QPushButton *button = bar.addButton(u"Press me"_s, variant.primary, variant.danger);
        QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
        bar.show();
        QVERIFY(QTest::qWaitForWindowActive(&bar));
        button->clearFocus(); // the only button of the window has been given it
        putPointerOn(*button);
        const QImage lit = grabWidget(*button, 2.0);
        const double middle = button->height() / 2.0;
        QCOMPARE(colourAt(lit, { 6.0, middle }), themedColor(variant.background));
        QCOMPARE(colourAt(lit, { 0.5, middle }), themedColor(variant.border));
        button->setAttribute(Qt::WA_UnderMouse, false);

        const QPointF onTheRing(button->width() / 2.0, 2.75);
        const QColor before = colourAt(grabWidget(*button, 2.0), onTheRing);
        button->setFocus(Qt::TabFocusReason);
        const QColor after = colourAt(grabWidget(*button, 2.0), onTheRing);
        // Signs that are not text need a contrast of 3 : 1 to be seen with weak eyes.
        QVERIFY2(contrast(before, after) >= 3.0, qPrintable(before.name() + after.name()));
    }
}

void TestChrome::footerIsClearedByItsButton()
{
    InstallerFooterBar bar;
    bar.resize(kWidth, bar.height());
    bar.setStatusText(kLiteral);
    const QPushButton other(u"Other"_s, &bar);
    bar.show();
    QVERIFY(QTest::qWaitForWindowActive(&bar));
    QCOMPARE(shownLines(*bar.findChild<QLabel *>()), QStringList { kLiteral });
    const QPointer<QPushButton> back = bar.addButton(u"Back"_s, false, false);
    const QPointer<QPushButton> next = bar.addButton(u"Next"_s, true, false);
    QCOMPARE(bar.buttons(), (QList<QPushButton *> { back, next }));
    const QPushButton *close = nullptr;
    connect(next, &QPushButton::clicked, &bar, [&] {
        bar.clear();
        QVERIFY(bar.buttons().isEmpty());
        QVERIFY(back->isHidden() && next->isHidden());
        QVERIFY(!other.hasFocus()); // which next has had
        close = bar.addButton(u"Close"_s, false, false);
    });
    next->setFocus();
    QTest::mouseClick(next, Qt::LeftButton);
    QCOMPARE(bar.buttons().size(), 1);
    QVERIFY(labelOf(&bar, kLiteral));
    QTRY_COMPARE(close->geometry().right(), kWidth - 18 - 1);
    QTRY_VERIFY(!back && !next);
}

// The chevrons are 37 px wide, rest 32 px from the edges and have 90 px to go. The mark's own
// widget must not cut them off.
void TestChrome::markComesInFromTheRailsEdges()
{
    constexpr int kLeft = 5; // pixels of the left one that are in the rail already
    constexpr int kRight = 191; // where the right one begins
    InstallerRail rail;
    rail.resize(kRailSize);
    rail.layout()->activate();
    const QImage empty = grabWidget(rail);
    rail.mark()->setA1Progress(0.3);
    rail.mark()->setA2Progress(0.3);
    const QImage picture = grabWidget(rail);
    for (int x = 0; x < kRailSize.width(); ++x) {
        const QRect column(x, 0, 1, kRailSize.height());
        const bool isDrawn = picture.copy(column) != empty.copy(column);
        const bool mayBeDrawn = x < kLeft + 6 || (x > kRight - 6 && x < 195);
        const bool mustBeDrawn = x <= kLeft || (x >= kRight && x < 195);
        QVERIFY2(isDrawn ? mayBeDrawn : !mustBeDrawn, qPrintable(QString::number(x)));
    }
}

// All of the mark's width only while something is on its way there.
void TestChrome::railRepaintsThePlaceOfTheMark()
{
    InstallerRail rail;
    rail.show();
    AnimatedMark *mark = rail.mark();
    for (const char *part : { "a1Progress", "a2Progress", "a3Progress", "a4Progress" })
        QVERIFY(mark->setProperty(part, 1.0));
    PaintWatch watch(*mark);
    mark->setFill(0.5);
    QVERIFY(watch.seesRepaint());
    QCOMPARE(watch.lastRegion(), QRegion(mark->contentsRect()));
    mark->setA1Progress(0.5);
    QVERIFY(watch.seesRepaint());
    mark->setDriftOffset(-1.0);
    QVERIFY(watch.seesRepaint());
    QCOMPARE(watch.lastRegion(), QRegion(mark->rect()));
}

QTEST_MAIN(TestChrome)
#include "tst_chrome.moc"
