// What the radio option and the check box do; each row is one of the two.

#include "pages/manualclock.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/course.h"
#include "widgets/look.h"
#include "widgets/selectionkinds.h"

#include <QButtonGroup>
#include <QEnterEvent>
#include <QFontMetrics>
#include <QPushButton>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kHoverDuration = 150;
constexpr QSize kSize(200, 40);

void enter(QWidget &widget)
{
    const QPointF point(20, 20);
    QEnterEvent event(point, point, point);
    QCoreApplication::sendEvent(&widget, &event);
}

void leave(QWidget &widget)
{
    QEvent event(QEvent::Leave);
    QCoreApplication::sendEvent(&widget, &event);
}

bool ringIsSeen(SelectionControl &control)
{
    return differenceAt(grabWidget(control, 2.0), { { 100, 0.75 } }, themedColor(u"@INS_ACCENT"_s))
        .isEmpty();
}

/// Controls below one another in an active window, and above them a button that has the focus.
struct Window
{
    explicit Window(const QList<SelectionControl *> &controls)
        : first(new QPushButton(u"First"_s, &widget))
    {
        int y = 40;
        for (SelectionControl *control : controls) {
            control->setParent(&widget);
            control->setGeometry(QRect({ 0, y }, kSize));
            y += kSize.height();
        }
        first->setGeometry(0, 0, 100, 30);
        widget.resize(300, 200);
        widget.show();
        activate();
        first->setFocus();
    }

    void activate()
    {
        widget.activateWindow();
        (void)QTest::qWaitForWindowActive(&widget);
    }

    QWidget widget;
    QPushButton *first;
};

} // namespace

class TestSelectionControl : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { expectNoWarningsInLightTheme(); }
    void preferredSize_data() { addSelectionKinds(); }
    void preferredSize();
    void followsItsCheckedState_data() { addSelectionKinds(); }
    void followsItsCheckedState();
    void lightsUpUnderThePointer_data() { addSelectionKinds(); }
    void lightsUpUnderThePointer();
    void togglesByKeyAndClick_data() { addSelectionKinds(); }
    void togglesByKeyAndClick();
    void ringForTheKeyboardOnly_data() { addSelectionKinds(); }
    void ringForTheKeyboardOnly();
    void focusMovesWhileTheWindowIsInTheBackground_data() { addSelectionKinds(); }
    void focusMovesWhileTheWindowIsInTheBackground();
    void arrowKeysChooseAmongRadioOptions();
};

void TestSelectionControl::preferredSize()
{
    QFETCH(const SelectionMaker, make);
    QFETCH(const int, room);
    const std::unique_ptr<SelectionControl> control(make({}));
    for (const QString &text : { u""_s, u"Delete my preferences"_s }) {
        control->setText(text);
        for (int pixels : { 4, 13, 40 }) {
            QFont font = control->font();
            font.setPixelSize(pixels);
            control->setFont(font);
            const QFontMetrics metrics(control->font());
            QCOMPARE(
                control->sizeHint(),
                QSize(metrics.horizontalAdvance(text) + 53, qMax(metrics.height(), 16) + room));
        }
    }
}

void TestSelectionControl::followsItsCheckedState()
{
    QFETCH(const SelectionMaker, make);
    QFETCH(const QByteArray, progress);
    QFETCH(const int, duration);
    ManualClock clock;
    const std::unique_ptr<SelectionControl> control(make(u"A"_s));
    control->setAutoExclusive(false); // which would keep a radio option from being deselected
    const auto value = [&] { return control->property(progress).toDouble(); };
    const auto course = [duration](double from, double to) {
        return Course { from, to, duration, QEasingCurve::OutCubic };
    };
    control->setChecked(true);
    QCOMPARE(departure(clock, course(0.0, 1.0), value), QString());
    control->setChecked(false);
    QCOMPARE(departure(clock, course(1.0, 0.0), value), QString());
    control->setChecked(true);
    clock.pass(40);
    const double turn = value();
    QVERIFY(turn > 0.4 && turn < 0.7);
    control->setChecked(false);
    QCOMPARE(departure(clock, course(turn, 0.0), value), QString());
}

void TestSelectionControl::lightsUpUnderThePointer()
{
    QFETCH(const SelectionMaker, make);
    ManualClock clock;
    const std::unique_ptr<SelectionControl> control(make(u"A"_s));
    QCOMPARE(control->cursor().shape(), Qt::PointingHandCursor);
    const auto progress = [&] { return control->hoverProgress(); };
    enter(*control);
    QCOMPARE(departure(clock, { 0.0, 1.0, kHoverDuration, QEasingCurve::Linear }, progress),
             QString());
    leave(*control);
    clock.pass(60);
    const double turn = progress();
    QVERIFY(turn > 0.5 && turn < 0.7);
    enter(*control);
    clock.pass(kHoverDuration);
    QCOMPARE(progress(), 1.0);
    leave(*control);
    QCOMPARE(departure(clock, { 1.0, 0.0, kHoverDuration, QEasingCurve::Linear }, progress),
             QString());
    QVERIFY(!control->isChecked());
}

void TestSelectionControl::togglesByKeyAndClick()
{
    QFETCH(const SelectionMaker, make);
    SelectionControl *control = make(u"A"_s);
    const Window window({ control });
    QTest::keyClick(window.first, Qt::Key_Tab);
    QTest::keyClick(control, Qt::Key_Space);
    QVERIFY(control->isChecked());
    for (const QPoint &anywhere : { QPoint(1, 1), QPoint(17, 20), QPoint(198, 38) }) {
        const bool before = control->isChecked();
        QTest::mouseClick(control, Qt::LeftButton, {}, anywhere);
        QCOMPARE(control->isChecked(), !before);
    }
}

void TestSelectionControl::ringForTheKeyboardOnly()
{
    QFETCH(const SelectionMaker, make);
    SelectionControl *control = make(u"A"_s);
    const Window window({ control });
    QVERIFY(!ringIsSeen(*control));
    QTest::keyClick(window.first, Qt::Key_Tab);
    QVERIFY(control->hasFocus());
    QVERIFY(ringIsSeen(*control));
    // It follows the plate, whose corners the stroke's middle line meets here.
    const QImage picture = grabWidget(*control, 8.0);
    QCOMPARE(inkRect(picture, themedColor(u"@INS_ACCENT"_s)), QRectF({}, kSize));
    const double onStroke = 0.75 + 8.0 * (1.0 - M_SQRT1_2);
    QVERIFY(colourAt(picture, { onStroke, onStroke }).alpha() > 250);
    QCOMPARE(colourAt(picture, { onStroke - 0.8, onStroke - 0.8 }).alpha(), 0);

    QTest::keyClick(control, Qt::Key_Backtab);
    QVERIFY(window.first->hasFocus());
    QVERIFY(!ringIsSeen(*control));
    QTest::mouseClick(control, Qt::LeftButton);
    QVERIFY(control->hasFocus());
    QVERIFY(!ringIsSeen(*control));
}

void TestSelectionControl::focusMovesWhileTheWindowIsInTheBackground()
{
    QFETCH(const SelectionMaker, make);
    SelectionControl *control = make(u"A"_s);
    Window window({ control });
    QTest::keyClick(window.first, Qt::Key_Tab);
    QVERIFY(ringIsSeen(*control));
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    window.first->setFocus();
    window.activate();
    QVERIFY(window.first->hasFocus());
    QVERIFY(!ringIsSeen(*control));
}

void TestSelectionControl::arrowKeysChooseAmongRadioOptions()
{
    auto *accept = new RadioOption(u"Accept"_s);
    auto *decline = new RadioOption(u"Decline"_s);
    const Window window({ accept, decline });
    QButtonGroup group;
    group.addButton(accept);
    group.addButton(decline);
    accept->setChecked(true);
    QTest::keyClick(window.first, Qt::Key_Tab);
    QVERIFY(accept->hasFocus());
    QTest::keyClick(accept, Qt::Key_Down);
    QVERIFY(decline->hasFocus());
    QVERIFY(decline->isChecked());
    QVERIFY(!accept->isChecked());
    QVERIFY(ringIsSeen(*decline));
    QVERIFY(!ringIsSeen(*accept));
    QTest::keyClick(decline, Qt::Key_Tab); // which meets a group once
    QVERIFY(window.first->hasFocus());
}

QTEST_MAIN(TestSelectionControl)
#include "tst_selectioncontrol.moc"
