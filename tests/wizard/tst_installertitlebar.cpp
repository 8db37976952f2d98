#include "app/applicationfonts.h"
#include "pages/layoutoutline.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "wizard/installertitlebar.h"
#include "wizard/onscreen.h"
#include "wizard/windowshape.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kWidth = 680;
const QString kTitle = u"Varnel Schematics setup"_s;

QPushButton *minimizeButton(const InstallerTitleBar &bar)
{
    return bar.findChildren<QPushButton *>().first();
}

QPushButton *closeButton(const InstallerTitleBar &bar)
{
    return bar.findChild<QPushButton *>(u"insCloseBtn"_s);
}

/// A window with a title bar at its top, not at the window's corner.
struct Window
{
    Window()
    {
        window.setWindowFlag(Qt::FramelessWindowHint);
        window.resize(kWidth, 474);
        window.move(100, 80);
        bar = new InstallerTitleBar(kTitle, &window);
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

class TestInstallerTitleBar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void layout();
    void title();
    void titleIsChanged();
    void buttons();
    void styles();
    void buttonsAskForWhatTheySay();
    void signalsInTheirOrder();
    void painting_data();
    void painting();
    void focusRingKeepsInsideTheCorner_data() { painting_data(); }
    void focusRingKeepsInsideTheCorner();
    void themeChangeRepaints();
    void hairlineIsNotCovered();
    void dragsTheWindow();
    void dragOffsetIsRounded();
    void dragEndsWithTheRelease();
    void slidingOffAButtonDragsNothing_data();
    void slidingOffAButtonDragsNothing();
    void onlyTheLeftButtonDrags_data();
    void onlyTheLeftButtonDrags();
};

void TestInstallerTitleBar::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestInstallerTitleBar::layout()
{
    InstallerTitleBar bar(kTitle);
    QCOMPARE(bar.minimumHeight(), 36);
    QCOMPARE(bar.maximumHeight(), 36);
    const QStringList outline = layoutOutline(&bar);
    QVERIFY(outline.first().startsWith(u"margins 14 0 0 0"_s));
    QCOMPARE(outline.sliced(1),
             (QStringList { u"label: "_s + kTitle, u"stretch"_s, u"button: –"_s, u"button: ✕"_s }));
}

void TestInstallerTitleBar::title()
{
    InstallerTitleBar bar(kTitle);
    QCOMPARE(bar.title(), kTitle);
    auto *label = bar.findChild<QLabel *>();
    label->ensurePolished();
    QCOMPARE(label->text(), kTitle);
    QCOMPARE(label->font().pixelSize(), 12);
    QCOMPARE(int(label->font().weight()), 500);
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        QCOMPARE(label->styleSheet(),
                 coloured(u"color:%1;font-size:12px;background:transparent;"_s, { u"@INS_TX"_s }));
    }
}

void TestInstallerTitleBar::titleIsChanged()
{
    InstallerTitleBar bar(kTitle);
    bar.setTitle(u"Varnel Schematics uninstall"_s);
    QCOMPARE(bar.title(), u"Varnel Schematics uninstall"_s);
    QCOMPARE(bar.findChild<QLabel *>()->text(), u"Varnel Schematics uninstall"_s);
}

void TestInstallerTitleBar::buttons()
{
    InstallerTitleBar bar(kTitle);
    const QList<QPushButton *> buttons = bar.findChildren<QPushButton *>();
    QCOMPARE(buttons.size(), 2);
    for (QPushButton *button : buttons) {
        QCOMPARE(button->minimumSize(), QSize(40, 35));
        QCOMPARE(button->maximumSize(), QSize(40, 35));
        QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
    }
    QCOMPARE(minimizeButton(bar)->text(), u"\u2013"_s);
    QCOMPARE(minimizeButton(bar)->accessibleName(), u"Minimize"_s);
    QCOMPARE(closeButton(bar), buttons.last());
    QCOMPARE(closeButton(bar)->text(), u"\u2715"_s);
    QCOMPARE(closeButton(bar)->accessibleName(), u"Close"_s);
}

void TestInstallerTitleBar::styles()
{
    InstallerTitleBar bar(kTitle);
    for (bool dark : { false, true, false }) {
        ThemeManager::instance().setDarkMode(dark);
        const QString style =
            coloured(u"QPushButton{border:none;background:transparent;color:%1;font-size:12px;}"
                     "QPushButton:hover{background:%2;color:%3;}"_s,
                     { u"@INS_TX2"_s, u"@INS_LINE"_s, u"@INS_TX"_s });
        QCOMPARE(minimizeButton(bar)->styleSheet(), style);
        QCOMPARE(closeButton(bar)->styleSheet(),
                 style
                     + u"QPushButton#insCloseBtn:hover{background:#D63B32;color:#FFFFFF;"
                       "border-top-right-radius:11px;}");
    }
}

void TestInstallerTitleBar::buttonsAskForWhatTheySay()
{
    InstallerTitleBar bar(kTitle);
    bar.resize(kWidth, 36);
    bar.show();
    QSignalSpy minimize(&bar, &InstallerTitleBar::minimizeRequested);
    QSignalSpy close(&bar, &InstallerTitleBar::closeRequested);
    QTest::mouseClick(minimizeButton(bar), Qt::LeftButton);
    QCOMPARE(minimize.size(), 1);
    QCOMPARE(close.size(), 0);
    QTest::mouseClick(closeButton(bar), Qt::LeftButton);
    QCOMPARE(minimize.size(), 1);
    QCOMPARE(close.size(), 1);
    QTest::keyClick(closeButton(bar), Qt::Key_Space);
    QCOMPARE(close.size(), 2);
}

void TestInstallerTitleBar::signalsInTheirOrder()
{
    const QMetaObject &meta = InstallerTitleBar::staticMetaObject;
    QStringList signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Signal)
            signatures.append(QString::fromLatin1(meta.method(i).methodSignature()));
    }
    QCOMPARE(signatures, (QStringList { u"minimizeRequested()"_s, u"closeRequested()"_s }));
}

void TestInstallerTitleBar::painting_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<double>("ratio");
    for (double ratio : { 1.0, 2.0 }) {
        QTest::addRow("light, ratio %g", ratio) << false << ratio;
        QTest::addRow("dark, ratio %g", ratio) << true << ratio;
    }
}

void TestInstallerTitleBar::painting()
{
    QFETCH(bool, dark);
    QFETCH(double, ratio);
    ThemeManager::instance().setDarkMode(dark);
    InstallerTitleBar bar(kTitle);
    bar.resize(kWidth, 36);
    const QImage picture = grabWidget(bar, ratio);
    const QColor panel = themedColor(u"@INS_PANEL"_s);
    const QColor line = themedColor(u"@INS_LINE"_s);

    // Both upper corners are rounded by 11 px: a point on the diagonal 2 px in is out, 4.5 px in.
    for (double x : { 0.3, 2.0 }) {
        QCOMPARE(colourAt(picture, { x, x }).alpha(), 0);
        QCOMPARE(colourAt(picture, { kWidth - x - 0.3, x }).alpha(), 0);
    }
    QCOMPARE(colourAt(picture, { 4.5, 4.5 }), panel);
    QCOMPARE(colourAt(picture, { kWidth - 5.0, 4.5 }), panel);
    QCOMPARE(colourAt(picture, { 11.5, 0.3 }), panel);
    QCOMPARE(colourAt(picture, { 0.3, 11.5 }), panel);

    // The lower corners are not, and the hairline goes all the way.
    for (double x : { 0.3, kWidth / 2.0, kWidth - 0.3 })
        QCOMPARE(colourAt(picture, { x, 34.5 }), panel);
    for (double anyRatio : kScreenRatios)
        QVERIFY(hasHairline(grabWidget(bar, anyRatio), Qt::BottomEdge, line));
}

void TestInstallerTitleBar::focusRingKeepsInsideTheCorner()
{
    QFETCH(bool, dark);
    QFETCH(double, ratio);
    ThemeManager::instance().setDarkMode(dark);
    InstallerTitleBar bar(kTitle);
    bar.resize(kWidth, 36);
    bar.show();
    QVERIFY(QTest::qWaitForWindowActive(&bar));
    minimizeButton(bar)->setFocus(Qt::OtherFocusReason);
    const QImage before = grabWidget(bar, ratio);
    closeButton(bar)->setFocus(Qt::TabFocusReason);
    const QImage after = grabWidget(bar, ratio);

    const QPointF centre(kWidth - kCornerRadius, kCornerRadius); // of the corner's arc
    for (int y = 0; y < after.height(); ++y) {
        for (int x = 0; x < after.width(); ++x) {
            const QPointF out = (QPointF(x, y) + QPointF(0.5, 0.5)) / ratio - centre;
            const bool isInCorner = out.x() > 0.0 && out.y() < 0.0;
            if (isInCorner && std::hypot(out.x(), out.y()) > kCornerRadius)
                QCOMPARE(after.pixelColor(x, y), before.pixelColor(x, y));
        }
    }
    const QRectF button = closeButton(bar)->geometry();
    for (const QPointF &place : { QPointF(button.center().x(), button.top() + 2.75),
                                  QPointF(button.center().x(), button.bottom() - 2.75),
                                  QPointF(button.left() + 2.75, button.center().y()),
                                  QPointF(button.right() - 2.75, button.center().y()) })
        QCOMPARE(colourAt(after, place), themedColor(u"@INS_ACCENT"_s));
}

void TestInstallerTitleBar::themeChangeRepaints()
{
    InstallerTitleBar bar(kTitle);
    bar.resize(kWidth, 36);
    QVERIFY(repaintsOnThemeChange(bar, { 4.5, 20 }, u"@INS_PANEL"_s));
}

void TestInstallerTitleBar::hairlineIsNotCovered()
{
    InstallerTitleBar bar(kTitle);
    bar.resize(kWidth, 36);
    bar.show();
    QCOMPARE(minimizeButton(bar)->geometry(), QRect(kWidth - 80, 0, 40, 35));
    QCOMPARE(closeButton(bar)->geometry(), QRect(kWidth - 40, 0, 40, 35));
}

void TestInstallerTitleBar::dragsTheWindow()
{
    Window world;
    const QPoint start = world.window.pos();
    const QPoint grip = start + QPoint(200, 20);
    QVERIFY(world.send(QEvent::MouseButtonPress, grip, Qt::LeftButton, Qt::LeftButton));
    QCOMPARE(world.window.pos(), start);
    for (const QPoint &way : { QPoint(30, 10), QPoint(-50, 40), QPoint(0, 0) }) {
        QVERIFY(world.send(QEvent::MouseMove, grip + way, Qt::NoButton, Qt::LeftButton));
        QCOMPARE(world.window.pos(), start + way);
        QCOMPARE(world.bar->pos(), QPoint(0, 0));
    }
}

void TestInstallerTitleBar::dragOffsetIsRounded()
{
    Window world;
    const QPoint start = world.window.pos();
    const QPointF grip = start + QPointF(200.6, 20.4); // counts as (201, 20)
    world.send(QEvent::MouseButtonPress, grip, Qt::LeftButton, Qt::LeftButton);
    world.send(QEvent::MouseMove, start + QPointF(211.0, 30.0), Qt::NoButton, Qt::LeftButton);
    QCOMPARE(world.window.pos(), start + QPoint(10, 10));
}

void TestInstallerTitleBar::dragEndsWithTheRelease()
{
    Window world;
    const QPoint start = world.window.pos();
    const QPoint grip = start + QPoint(200, 20);
    const QPoint way(30, 10);
    world.send(QEvent::MouseButtonPress, grip, Qt::LeftButton, Qt::LeftButton);
    world.send(QEvent::MouseMove, grip + way, Qt::NoButton, Qt::LeftButton);
    // Another button, pressed and let go on the way, is not the end of it.
    world.send(QEvent::MouseButtonRelease, grip + way, Qt::RightButton, Qt::LeftButton);
    world.send(QEvent::MouseMove, grip + 2 * way, Qt::NoButton, Qt::LeftButton);
    QCOMPARE(world.window.pos(), start + 2 * way);
    QVERIFY(world.send(QEvent::MouseButtonRelease, grip + 2 * way, Qt::LeftButton, Qt::NoButton));
    QVERIFY(!world.send(QEvent::MouseMove, grip + 3 * way, Qt::NoButton, Qt::LeftButton));
    QCOMPARE(world.window.pos(), start + 2 * way);
}

void TestInstallerTitleBar::slidingOffAButtonDragsNothing_data()
{
    QTest::addColumn<bool>("afterADrag");
    QTest::addColumn<bool>("isClose");
    for (bool afterADrag : { false, true }) {
        const char *before = afterADrag ? "a drag" : "nothing";
        QTest::addRow("minimize, after %s", before) << afterADrag << false;
        QTest::addRow("close, after %s", before) << afterADrag << true;
    }
}

// With the mouse itself: a button lets its bar have the moves of a pointer that has left it.
void TestInstallerTitleBar::slidingOffAButtonDragsNothing()
{
    QFETCH(const bool, afterADrag);
    QFETCH(const bool, isClose);
    Window world;
    QWindow *window = world.window.windowHandle();
    const auto drag = [window](const QPoint &from, const QPoint &way) {
        QTest::mousePress(window, Qt::LeftButton, {}, from);
        QTest::mouseMove(window, from + way / 2);
        QTest::mouseMove(window, from + way);
        QTest::mouseRelease(window, Qt::LeftButton, {}, from + way);
    };
    if (afterADrag) {
        const QPoint before = world.window.pos();
        drag({ 200, 20 }, { 6, 0 });
        QVERIFY(world.window.pos() != before);
    }
    QSignalSpy minimize(world.bar, &InstallerTitleBar::minimizeRequested);
    QSignalSpy close(world.bar, &InstallerTitleBar::closeRequested);
    const QPoint start = world.window.pos();
    const QPushButton *button = isClose ? closeButton(*world.bar) : minimizeButton(*world.bar);
    const QPoint middle = button->geometry().center();
    for (const QPoint &way : { QPoint(-300, 10), QPoint(0, 200) }) {
        drag(middle, way);
        QCOMPARE(world.window.pos(), start);
    }
    QVERIFY(minimize.isEmpty() && close.isEmpty());
    // Nor has the button been spoilt by it.
    QTest::mouseClick(window, Qt::LeftButton, {}, middle);
    QCOMPARE(minimize.size() + close.size(), 1);
}

void TestInstallerTitleBar::onlyTheLeftButtonDrags_data()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::newRow("right") << Qt::RightButton;
    QTest::newRow("middle") << Qt::MiddleButton;
    QTest::newRow("none") << Qt::NoButton;
}

void TestInstallerTitleBar::onlyTheLeftButtonDrags()
{
    QFETCH(Qt::MouseButton, button);
    Window world;
    const QPoint start = world.window.pos();
    const QPoint grip = start + QPoint(200, 20);
    if (button != Qt::NoButton)
        QVERIFY(!world.send(QEvent::MouseButtonPress, grip, button, button));
    const bool accepted =
        world.send(QEvent::MouseMove, grip + QPoint(30, 30), Qt::NoButton, button);
    QVERIFY(button == Qt::NoButton || !accepted);
    QCOMPARE(world.window.pos(), start);
}

QTEST_MAIN(TestInstallerTitleBar)
#include "tst_installertitlebar.moc"
