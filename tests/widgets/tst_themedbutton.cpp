// The button, and the focus ring as it is seen on it.

#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/focusring.h"
#include "widgets/look.h"
#include "widgets/themedbutton.h"

#include <QDialog>
#include <QFocusEvent>
#include <QPainter>
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

/// A focus event: whether the focus comes or goes, and why.
using Event = QPair<QEvent::Type, Qt::FocusReason>;
constexpr auto kIn = QEvent::FocusIn;
constexpr auto kOut = QEvent::FocusOut;

} // namespace

class TestThemedButton : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { expectNoWarningsInLightTheme(); }
    void ringShowsWhereTheKeyboardIs_data();
    void ringShowsWhereTheKeyboardIs();
    void tabShowsTheRing();
    void ringIsTheOnlySignOfFocus();
    void focusMovesWhileTheWindowIsInTheBackground();
    void ringKeepsAGap();
    void ringFollowsTheCorners();
    void returnDoesNotPressIt();
};

void TestThemedButton::ringShowsWhereTheKeyboardIs_data()
{
    QTest::addColumn<QList<Event>>("events");
    QTest::addColumn<bool>("seen");
    const Event tab(kIn, Qt::TabFocusReason);
    const Event click(kIn, Qt::MouseFocusReason);
    const Event windowGoes(kOut, Qt::ActiveWindowFocusReason);
    const Event windowComes(kIn, Qt::ActiveWindowFocusReason);
    const Event popupOpens(kOut, Qt::PopupFocusReason);
    const Event popupCloses(kIn, Qt::PopupFocusReason);
    const auto add = [](const char *name, const QList<Event> &events, bool seen) {
        QTest::newRow(name) << events << seen;
    };
    add("at first", {}, false);
    add("tab", { tab }, true);
    add("back tab", { { kIn, Qt::BacktabFocusReason } }, true);
    add("shortcut", { { kIn, Qt::ShortcutFocusReason } }, true);
    add("click", { click }, false);
    add("by the program", { { kIn, Qt::OtherFocusReason } }, false);
    add("window comes", { windowComes }, false);
    add("tab, away by tab", { tab, { kOut, Qt::TabFocusReason } }, false);
    add("tab, away by back tab", { tab, { kOut, Qt::BacktabFocusReason } }, false);
    add("tab, away by shortcut", { tab, { kOut, Qt::ShortcutFocusReason } }, false);
    add("tab, away by click", { tab, { kOut, Qt::MouseFocusReason } }, false);
    add("tab, away by the program", { tab, { kOut, Qt::OtherFocusReason } }, false);
    add("tab, window goes and comes", { tab, windowGoes, windowComes }, true);
    add("tab, popup opens and closes", { tab, popupOpens, popupCloses }, true);
    add("click, window goes and comes", { click, windowGoes, windowComes }, false);
    add("click, popup opens and closes", { click, popupOpens, popupCloses }, false);
    add("tab, away, click", { tab, { kOut, Qt::TabFocusReason }, click }, false);
}

void TestThemedButton::ringShowsWhereTheKeyboardIs()
{
    QFETCH(const QList<Event>, events);
    QFETCH(const bool, seen);
    FocusRing ring;
    for (const auto &[type, reason] : events)
        ring.update(QFocusEvent(type, reason));
    QImage picture(60, 40, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setBrush(Qt::red); // what the control painted last
    ring.paint(painter, QRectF(0, 0, 60, 40), 8.0, u"@INS_ACCENT"_s);
    QCOMPARE(colourAt(picture, { 30, 20 }).alpha(), 0);
    QCOMPARE(pixelsUnlike(picture, Qt::transparent) > 0, seen);
}

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

void TestThemedButton::focusMovesWhileTheWindowIsInTheBackground()
{
    Scene scene;
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
