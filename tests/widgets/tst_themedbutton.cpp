// The button, and where its focus ring lies.

#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/look.h"
#include "widgets/themedbutton.h"

#include <QDialog>
#include <QSignalSpy>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A window with a plain button, which has the focus at first, and the one that is judged.
struct Scene
{
    explicit Scene(double radius = 8.0)
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

    [[nodiscard]] bool ringIsSeen(const QString &token = u"@INS_ACCENT"_s) const
    {
        return differenceAt(grabWidget(*button, 2.0), { { 50, 2.75 } }, themedColor(token))
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
    void init() { expectNoWarningsInLightTheme(); }
    void tabShowsTheRing();
    void ringIsTheOnlySignOfFocus();
    void ringKeepsAGap();
    void ringFollowsTheCorners();
    void returnDoesNotPressIt();
};

void TestThemedButton::tabShowsTheRing()
{
    Scene scene;
    QVERIFY(!scene.ringIsSeen());
    QTest::keyClick(&scene.window, Qt::Key_Tab);
    QVERIFY(scene.button->hasFocus());
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        QVERIFY(scene.ringIsSeen());
    }
    scene.button->setFocusToken(u"@INS_RED"_s);
    QVERIFY(scene.ringIsSeen(u"@INS_RED"_s));
    scene.button->setFocusToken(u"@INS_ACCENT"_s);
    QTest::keyClick(&scene.window, Qt::Key_Backtab);
    QVERIFY(!scene.button->hasFocus());
    QVERIFY(!scene.ringIsSeen());
    scene.button->setFocus();
    QVERIFY(!scene.ringIsSeen());
}

// The native style would frame the text as well.
void TestThemedButton::ringIsTheOnlySignOfFocus()
{
    Scene scene;
    const QRect inner(10, 10, 80, 20);
    const QImage before = grabWidget(*scene.button).copy(inner);
    QTest::keyClick(&scene.window, Qt::Key_Tab);
    QVERIFY(scene.ringIsSeen());
    QCOMPARE(grabWidget(*scene.button).copy(inner), before);
}

void TestThemedButton::ringKeepsAGap()
{
    Scene scene;
    QTest::keyClick(&scene.window, Qt::Key_Tab);
    const QImage picture = grabWidget(*scene.button, 8.0);
    QCOMPARE(inkRect(picture, themedColor(u"@INS_ACCENT"_s)), QRectF(2, 2, 96, 36));
    QCOMPARE(differenceAt(picture, { { 50, 1.8 }, { 50, 3.7 } }, Qt::white), QString());
    QCOMPARE(differenceAt(picture, { { 50, 3.3 } }, themedColor(u"@INS_ACCENT"_s)), QString());
}

void TestThemedButton::ringFollowsTheCorners()
{
    for (double radius : { 0.0, 1.0, 6.0, 12.0 }) {
        Scene scene(radius);
        QTest::keyClick(&scene.window, Qt::Key_Tab);
        const QImage picture = grabWidget(*scene.button, 8.0);
        const double inner = qMax(radius - 2.0, 0.0);
        // On the diagonal, 0.3 of the radius away from the corner of the stroke's middle line.
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
void TestThemedButton::returnDoesNotPressIt()
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

QTEST_MAIN(TestThemedButton)
#include "tst_themedbutton.moc"
