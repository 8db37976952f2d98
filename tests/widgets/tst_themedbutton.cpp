#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/look.h"
#include "widgets/themedbutton.h"

#include <QBoxLayout>
#include <QDialog>
#include <QSignalSpy>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A window with a plain button, which has the focus at first, and the one that is judged.
struct Scene
{
    explicit Scene(double radius)
    {
        first = new QPushButton(u"First"_s, &window);
        first->setGeometry(10, 10, 100, 40);
        button = new ThemedButton(u"Second"_s, radius, &window);
        button->setGeometry(10, 60, 100, 40);
        button->setStyleSheet(u"QPushButton{background:#ffffff;border:none;color:#ffffff;}"_s);
        window.resize(200, 120);
        window.show();
        window.activateWindow();
        (void)QTest::qWaitForWindowActive(&window);
        first->setFocus();
    }

    [[nodiscard]] bool ringIsSeen() const
    {
        return difference(colourAt(grabWidget(*button, 2.0), { 50, 2.75 }),
                          themedColor(u"@INS_ACCENT"_s))
            .isEmpty();
    }

    QWidget window;
    QPushButton *first;
    ThemedButton *button;
};

} // namespace

class TestThemedButton : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void construction();
    void returnBelongsToThePage();
    void tabShowsTheRing();
    void ringInAnotherColour();
    void ringIsTheOnlySignOfFocus();
    void clickShowsNoRing();
    void focusByTheProgramShowsNoRing();
    void focusedElsewhereWhileTheWindowIsInTheBackground();
    void ringInBothThemes();
    void ringKeepsAGap();
    void ringFollowsTheCorners();
    void ringNeedsNoRoom();
    void keyboardPresses();
};

void TestThemedButton::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestThemedButton::construction()
{
    QWidget parent;
    const ThemedButton button(u"Go"_s, 8.0, &parent);
    QCOMPARE(button.text(), u"Go"_s);
    QCOMPARE(button.parent(), &parent);
    QCOMPARE(button.cursor().shape(), Qt::PointingHandCursor);
    QVERIFY(button.isEnabled());
    QVERIFY(!button.isCheckable());
    QVERIFY((button.focusPolicy() & Qt::StrongFocus) == Qt::StrongFocus);
}

// Stock buttons press themselves on Return in a dialogue.
void TestThemedButton::returnBelongsToThePage()
{
    QDialog dialog;
    auto *button = new ThemedButton(u"Go"_s, 8.0, &dialog);
    auto *other = new ThemedButton(u"Other"_s, 8.0, &dialog);
    QVERIFY(!button->autoDefault());
    const QSignalSpy clicked(button, &QAbstractButton::clicked);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    other->setFocus();
    QTest::keyClick(&dialog, Qt::Key_Return);
    QCOMPARE(clicked.count(), 0);
}

void TestThemedButton::tabShowsTheRing()
{
    Scene scene(8.0);
    QVERIFY(!scene.ringIsSeen());
    QTest::keyClick(&scene.window, Qt::Key_Tab);
    QVERIFY(scene.button->hasFocus());
    QVERIFY(scene.ringIsSeen());
    QTest::keyClick(&scene.window, Qt::Key_Backtab);
    QVERIFY(!scene.button->hasFocus());
    QVERIFY(!scene.ringIsSeen());
}

void TestThemedButton::ringInAnotherColour()
{
    Scene scene(8.0);
    scene.button->setStyleSheet(u"QPushButton{background:#0000ff;border:none;}"_s);
    scene.button->setFocusToken(u"@INS_RED"_s);
    QTest::keyClick(&scene.window, Qt::Key_Tab);
    const QColor ring = colourAt(grabWidget(*scene.button, 2.0), { 50, 2.75 });
    QCOMPARE(difference(ring, themedColor(u"@INS_RED"_s)), QString());
}

// The native style would frame the text as well.
void TestThemedButton::ringIsTheOnlySignOfFocus()
{
    Scene scene(8.0);
    const QRect inner(10, 10, 80, 20);
    const QImage before = grabWidget(*scene.button).copy(inner);
    QTest::keyClick(&scene.window, Qt::Key_Tab);
    QVERIFY(scene.ringIsSeen());
    QCOMPARE(grabWidget(*scene.button).copy(inner), before);
}

void TestThemedButton::clickShowsNoRing()
{
    Scene scene(8.0);
    QTest::mouseClick(scene.button, Qt::LeftButton);
    scene.button->setFocus(Qt::MouseFocusReason); // not every style gives it to a clicked button
    QVERIFY(scene.button->hasFocus());
    QVERIFY(!scene.ringIsSeen());
}

void TestThemedButton::focusByTheProgramShowsNoRing()
{
    Scene scene(8.0);
    scene.button->setFocus();
    QVERIFY(scene.button->hasFocus());
    QVERIFY(!scene.ringIsSeen());
}

void TestThemedButton::focusedElsewhereWhileTheWindowIsInTheBackground()
{
    Scene scene(8.0);
    QTest::keyClick(&scene.window, Qt::Key_Tab);
    QVERIFY(scene.ringIsSeen());
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    scene.first->setFocus();
    scene.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&scene.window));
    QVERIFY(scene.first->hasFocus());
    QVERIFY(!scene.ringIsSeen());
}

void TestThemedButton::ringInBothThemes()
{
    Scene scene(8.0);
    QTest::keyClick(&scene.window, Qt::Key_Tab);
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        QVERIFY(scene.ringIsSeen());
    }
}

void TestThemedButton::ringKeepsAGap()
{
    Scene scene(8.0);
    QTest::keyClick(&scene.window, Qt::Key_Tab);
    const QImage picture = grabWidget(*scene.button, 8.0);
    QCOMPARE(inkRect(picture, themedColor(u"@INS_ACCENT"_s)), QRectF(2, 2, 96, 36));
    QCOMPARE(difference(colourAt(picture, { 50, 1.8 }), Qt::white), QString());
    QCOMPARE(difference(colourAt(picture, { 50, 3.7 }), Qt::white), QString());
}

void TestThemedButton::ringFollowsTheCorners()
{
    const QColor accent = themedColor(u"@INS_ACCENT"_s);
    for (double radius : { 0.0, 1.0, 6.0, 12.0 }) {
        Scene scene(radius);
        QTest::keyClick(&scene.window, Qt::Key_Tab);
        const QImage picture = grabWidget(*scene.button, 8.0);
        const double inner = qMax(radius - 2.0, 0.0);
        const double onStroke = 2.75 + inner * (1.0 - M_SQRT1_2);
        QCOMPARE(difference(colourAt(picture, { onStroke, onStroke }), accent), QString());
        if (inner > 2.0) {
            QCOMPARE(difference(colourAt(picture, { onStroke - 0.8, onStroke - 0.8 }), Qt::white),
                     QString());
        }
    }
}

void TestThemedButton::ringNeedsNoRoom()
{
    Scene scene(8.0);
    const QSize before = scene.button->sizeHint();
    QTest::keyClick(&scene.window, Qt::Key_Tab);
    QVERIFY(scene.ringIsSeen());
    QCOMPARE(scene.button->sizeHint(), before);
    QCOMPARE(scene.button->size(), QSize(100, 40));
}

void TestThemedButton::keyboardPresses()
{
    Scene scene(8.0);
    const QSignalSpy clicked(scene.button, &QAbstractButton::clicked);
    QTest::keyClick(&scene.window, Qt::Key_Tab);
    QTest::keyClick(scene.button, Qt::Key_Space);
    QCOMPARE(clicked.count(), 1);
    scene.button->setEnabled(false);
    QTest::keyClick(scene.button, Qt::Key_Space);
    QCOMPARE(clicked.count(), 1);
}

QTEST_MAIN(TestThemedButton)
#include "tst_themedbutton.moc"
