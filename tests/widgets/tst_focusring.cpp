// The focus ring, and the button that has it inside its border.

#include "pages/lightthemetest.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/focusring.h"
#include "widgets/look.h"
#include "widgets/themedbutton.h"

#include <QDialog>
#include <QPainter>
#include <QSignalSpy>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Leaves it to the ring to repaint it, as text views do.
class Control : public QWidget
{
public:
    explicit Control(QWidget *parent) : QWidget(parent)
    {
        setFocusPolicy(Qt::StrongFocus);
        resize(100, 60);
    }

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
        m_ring.paint(painter, rect(), 8.0, u"@INS_ACCENT"_s);
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

/// A white button that has got the focus by keyboard.
struct ButtonScene
{
    explicit ButtonScene(double radius = 8.0) : button(u"A"_s, radius)
    {
        button.setStyleSheet(u"QPushButton{background:#ffffff;border:none;color:#ffffff;}"_s);
        button.resize(100, 40);
        before = grabWidget(button, 8.0);
        button.show();
        button.activateWindow();
        (void)QTest::qWaitForWindowActive(&button);
        button.clearFocus(); // which it has got with the window
        button.setAttribute(Qt::WA_KeyboardFocusChange); // as the key does, for the native frame
        button.setFocus(Qt::TabFocusReason);
    }

    ThemedButton button;
    QImage before;
};

} // namespace

class TestFocusRing : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void focus_data();
    void focus();
    void windowGoesAndComesBack();
    void focusedElsewhereInAnInactiveWindow();
    void repaintsTheControl();
    void ringOfAButton();
    void cornersOfAButton();
    void returnDoesNotPressAButton();
};

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
    QCOMPARE(colourAt(grabWidget(scene.control), { 50, 30 }).alpha(), 0); // nothing inside
    scene.other.setFocus(Qt::TabFocusReason);
    QVERIFY(!scene.ringIsSeen());
    // The program may have given it the focus while the window was inactive.
    scene.control.setFocus(Qt::ActiveWindowFocusReason);
    QVERIFY(!scene.ringIsSeen());
}

void TestFocusRing::windowGoesAndComesBack()
{
    for (const auto reason : { Qt::ActiveWindowFocusReason, Qt::PopupFocusReason }) {
        for (const bool byKeyboard : { true, false }) {
            Scene scene;
            scene.control.setFocus(byKeyboard ? Qt::TabFocusReason : Qt::MouseFocusReason);
            scene.other.setFocus(reason);
            QVERIFY(!scene.ringIsSeen());
            scene.control.setFocus(reason);
            QCOMPARE(scene.ringIsSeen(), byKeyboard);
        }
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

// The native style would frame the text as well, inside the ring.
void TestFocusRing::ringOfAButton()
{
    ButtonScene scene;
    for (const QString &token : { u"@INS_ACCENT"_s, u"@INS_RED"_s }) {
        scene.button.setFocusToken(token);
        ThemeManager::instance().setDarkMode(token == u"@INS_RED");
        const QImage picture = grabWidget(scene.button, 8.0);
        QCOMPARE(inkRect(picture, themedColor(token)), QRectF(2, 2, 96, 36));
        QCOMPARE(differenceAt(picture, { { 50, 1.8 }, { 50, 3.7 } }, Qt::white), QString());
        QCOMPARE(differenceAt(picture, { { 50, 3.3 } }, themedColor(token)), QString());
        const QRect inner(80, 80, 640, 160);
        QCOMPARE(picture.copy(inner), scene.before.copy(inner));
    }
}

void TestFocusRing::cornersOfAButton()
{
    for (double radius : { 0.0, 1.0, 12.0 }) {
        ButtonScene scene(radius);
        const QImage picture = grabWidget(scene.button, 8.0);
        const double inner = qMax(radius - 2.0, 0.0);
        const auto onDiagonal = [inner](double way) {
            const double place = 2.75 + inner * (1.0 - M_SQRT1_2) + way;
            return QPointF(place, place);
        };
        QCOMPARE(differenceAt(picture, { onDiagonal(0) }, themedColor(u"@INS_ACCENT"_s)),
                 QString());
        if (inner > 2.0)
            QCOMPARE(differenceAt(picture, { onDiagonal(-0.8), onDiagonal(0.8) }, Qt::white),
                     QString());
    }
}

// Stock buttons press themselves on Return in a dialogue.
void TestFocusRing::returnDoesNotPressAButton()
{
    QDialog dialog;
    ThemedButton button(u"Go"_s, 8.0, &dialog);
    const QSignalSpy clicked(&button, &QAbstractButton::clicked);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    button.setFocus();
    QTest::keyClick(&dialog, Qt::Key_Return);
    QCOMPARE(clicked.count(), 0);
}

QTEST_MAIN(TestFocusRing)
#include "tst_focusring.moc"
