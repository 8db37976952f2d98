#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/focusring.h"
#include "widgets/look.h"

#include <QPainter>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QRectF kRect(10, 10, 80, 40);

/// Leaves it to the ring to repaint it, as text views do.
class Control : public QWidget
{
public:
    explicit Control(QWidget *parent) : QWidget(parent)
    {
        setFocusPolicy(Qt::StrongFocus);
        resize(100, 60);
    }

    double radius = 8.0;
    int paints = 0;

protected:
    void focusInEvent(QFocusEvent *) override {}
    void focusOutEvent(QFocusEvent *) override {}
    void paintEvent(QPaintEvent *) override
    {
        ++paints;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(Qt::red); // what the control painted last
        m_ring.paint(painter, kRect, radius, u"@INS_ACCENT"_s);
    }

private:
    FocusRing m_ring { this };
};

/// A window with two controls, of which `other` has the focus at first.
struct Scene
{
    Scene()
    {
        window.resize(200, 120);
        window.show();
        window.activateWindow();
        (void)QTest::qWaitForWindowActive(&window);
        other.setFocus();
    }

    [[nodiscard]] bool ringIsSeen()
    {
        return pixelsUnlike(grabWidget(control), Qt::transparent) > 0;
    }

    QWidget window;
    Control other { &window };
    Control control { &window };
};

} // namespace

class TestFocusRing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void focus_data();
    void focus();
    void windowGoesAndComesBack_data();
    void windowGoesAndComesBack();
    void focusedElsewhereInAnInactiveWindow();
    void repaintsTheControl();
    void colour();
    void liesJustInside();
    void corners();
};

void TestFocusRing::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestFocusRing::focus_data()
{
    QTest::addColumn<Qt::FocusReason>("reason");
    QTest::addColumn<bool>("seen");
    QTest::newRow("tab") << Qt::TabFocusReason << true;
    QTest::newRow("back tab") << Qt::BacktabFocusReason << true;
    QTest::newRow("shortcut") << Qt::ShortcutFocusReason << true;
    QTest::newRow("click") << Qt::MouseFocusReason << false;
    QTest::newRow("by the program") << Qt::OtherFocusReason << false;
    QTest::newRow("menu bar") << Qt::MenuBarFocusReason << false;
    QTest::newRow("window") << Qt::ActiveWindowFocusReason << false;
    QTest::newRow("popup") << Qt::PopupFocusReason << false;
}

void TestFocusRing::focus()
{
    QFETCH(const Qt::FocusReason, reason);
    QFETCH(const bool, seen);
    Scene scene;
    QVERIFY(!scene.ringIsSeen());
    scene.control.setFocus(reason);
    QCOMPARE(scene.ringIsSeen(), seen);
    scene.other.setFocus(Qt::TabFocusReason);
    QVERIFY(!scene.ringIsSeen());
    // The program may have given it the focus while the window was inactive.
    scene.control.setFocus(Qt::ActiveWindowFocusReason);
    QVERIFY(!scene.ringIsSeen());
}

void TestFocusRing::windowGoesAndComesBack_data()
{
    QTest::addColumn<Qt::FocusReason>("reason");
    QTest::newRow("window") << Qt::ActiveWindowFocusReason;
    QTest::newRow("popup") << Qt::PopupFocusReason;
}

void TestFocusRing::windowGoesAndComesBack()
{
    QFETCH(const Qt::FocusReason, reason);
    for (const bool byKeyboard : { true, false }) {
        Scene scene;
        scene.control.setFocus(byKeyboard ? Qt::TabFocusReason : Qt::MouseFocusReason);
        scene.other.setFocus(reason);
        QVERIFY(!scene.ringIsSeen());
        scene.control.setFocus(reason);
        QCOMPARE(scene.ringIsSeen(), byKeyboard);
    }
}

// The control is not told that it has lost the focus.
void TestFocusRing::focusedElsewhereInAnInactiveWindow()
{
    Scene scene;
    scene.control.setFocus(Qt::TabFocusReason);
    QVERIFY(scene.ringIsSeen());
    QWidget front;
    front.show();
    front.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&front));
    scene.other.setFocus();
    scene.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&scene.window));
    QVERIFY(scene.other.hasFocus());
    QVERIFY(!scene.ringIsSeen());
}

void TestFocusRing::repaintsTheControl()
{
    Scene scene;
    QVERIFY(QTest::qWaitForWindowExposed(&scene.window));
    for (Control *next : { &scene.control, &scene.other }) {
        QCoreApplication::processEvents();
        const int before = scene.control.paints;
        next->setFocus(Qt::TabFocusReason);
        QTRY_VERIFY_WITH_TIMEOUT(scene.control.paints > before, 10000);
    }
}

void TestFocusRing::colour()
{
    Scene scene;
    scene.control.setFocus(Qt::TabFocusReason);
    for (const bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        for (const double ratio : { 1.0, 2.0 }) {
            const QImage ring = grabWidget(scene.control, ratio);
            QCOMPARE(difference(colourAt(ring, { 50, 10.25 }), themedColor(u"@INS_ACCENT"_s)),
                     QString());
            QCOMPARE(colourAt(ring, { 50, 30 }).alpha(), 0); // nothing inside
        }
    }
}

void TestFocusRing::liesJustInside()
{
    Scene scene;
    scene.control.setFocus(Qt::TabFocusReason);
    // So many device pixels per pixel that the edges of the stroke lie on them.
    const QImage ring = grabWidget(scene.control, 8.0);
    QCOMPARE(inkRect(ring), kRect);
    QVERIFY(colourAt(ring, { 50, 11.4 }).alpha() > 250);
    QCOMPARE(colourAt(ring, { 50, 11.6 }).alpha(), 0);
    QVERIFY(colourAt(ring, { 88.6, 30 }).alpha() > 250);
    QCOMPARE(colourAt(ring, { 88.4, 30 }).alpha(), 0);
}

void TestFocusRing::corners()
{
    Scene scene;
    scene.control.setFocus(Qt::TabFocusReason);
    // On the diagonal, 0.3 of the radius away from the corner of the stroke's middle line.
    for (const double radius : { 4.0, 12.0 }) {
        scene.control.radius = radius;
        const QImage ring = grabWidget(scene.control, 8.0);
        const double onStroke = 10.75 + radius * (1.0 - M_SQRT1_2);
        QVERIFY(colourAt(ring, { onStroke, onStroke }).alpha() > 250);
        QCOMPARE(colourAt(ring, { onStroke - 0.8, onStroke - 0.8 }).alpha(), 0);
        QCOMPARE(colourAt(ring, { onStroke + 0.8, onStroke + 0.8 }).alpha(), 0);
    }
    scene.control.radius = 0.0;
    QVERIFY(colourAt(grabWidget(scene.control, 8.0), { 10.5, 10.5 }).alpha() > 200);
}

QTEST_MAIN(TestFocusRing)
#include "tst_focusring.moc"
