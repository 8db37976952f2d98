// What the radio option and the check box share; each row is one of the two.

#include "pages/manualclock.h"
#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/course.h"
#include "widgets/look.h"
#include "widgets/paintwatch.h"
#include "widgets/selectionkinds.h"

#include <QEnterEvent>
#include <QFontMetrics>
#include <QMetaProperty>
#include <QPushButton>
#include <QSignalSpy>

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

/// The control in a window of its own that has another control to tab from and to.
struct Window
{
    explicit Window(const SelectionMaker &make)
        : first(new QPushButton(u"First"_s, &widget)), control(make(u"Second"_s))
    {
        control->setParent(&widget);
        first->setGeometry(0, 0, 100, 30);
        control->setGeometry(QRect(QPoint(0, 40), kSize));
        widget.resize(300, 100);
        widget.show();
        widget.activateWindow();
        (void)QTest::qWaitForWindowActive(&widget);
        first->setFocus();
    }

    [[nodiscard]] bool ringIsSeen() const
    {
        return difference(colourAt(grabWidget(*control, 2.0), { 100, 0.75 }),
                          themedColor(u"@INS_ACCENT"_s))
            .isEmpty();
    }

    QWidget widget;
    QPushButton *first;
    SelectionControl *control;
};

} // namespace

class TestSelectionControl : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void construction_data() { addSelectionKinds(); }
    void construction();
    void hoverProperty();
    void preferredSize_data() { addSelectionKinds(); }
    void preferredSize();
    void hover_data() { addSelectionKinds(); }
    void hover();
    void hoverTurnsBackFromWhereItIs_data() { addSelectionKinds(); }
    void hoverTurnsBackFromWhereItIs();
    void themeChangeRepaints_data() { addSelectionKinds(); }
    void themeChangeRepaints();
    void settingAPropertyRepaints_data() { addSelectionKinds(); }
    void settingAPropertyRepaints();
    void spaceToggles_data() { addSelectionKinds(); }
    void spaceToggles();
    void clickAnywhereInTheRowToggles_data() { addSelectionKinds(); }
    void clickAnywhereInTheRowToggles();
    void ringForTheKeyboardOnly_data() { addSelectionKinds(); }
    void ringForTheKeyboardOnly();
    void focusedElsewhereWhileTheWindowIsInTheBackground_data() { addSelectionKinds(); }
    void focusedElsewhereWhileTheWindowIsInTheBackground();
    void ringNeedsNoRoom_data() { addSelectionKinds(); }
    void ringNeedsNoRoom();
    void goesWhileItIsAnimated_data() { addSelectionKinds(); }
    void goesWhileItIsAnimated();
};

void TestSelectionControl::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestSelectionControl::construction()
{
    QFETCH(const SelectionMaker, make);
    QFETCH(const QByteArray, progress);
    const std::unique_ptr<SelectionControl> control(make(u"A label"_s));
    QCOMPARE(control->text(), u"A label"_s);
    QVERIFY(control->isCheckable());
    QVERIFY(!control->isChecked());
    QCOMPARE(control->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(control->focusPolicy(), Qt::StrongFocus);
    QCOMPARE(control->property(progress).toDouble(), 0.0);
    QCOMPARE(control->hoverProgress(), 0.0);
    QWidget parent;
    QCOMPARE(RadioOption(u"x"_s, &parent).parentWidget(), &parent);
    QCOMPARE(ToggleCheckbox(u"x"_s, &parent).parentWidget(), &parent);
}

void TestSelectionControl::hoverProperty()
{
    const QMetaObject &meta = SelectionControl::staticMetaObject;
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 1);
    const QMetaProperty property = meta.property(meta.propertyOffset());
    QCOMPARE(property.name(), "hoverProgress");
    QCOMPARE(property.metaType(), QMetaType::fromType<double>());
    QVERIFY(property.isWritable());
}

void TestSelectionControl::preferredSize()
{
    QFETCH(const SelectionMaker, make);
    QFETCH(const int, room);
    for (const QString &text : { u""_s, u"i"_s, u"Delete my preferences"_s }) {
        const std::unique_ptr<SelectionControl> control(make(text));
        for (int pixels : { 4, 12, 13, 40 }) {
            QFont font = control->font();
            font.setPixelSize(pixels);
            control->setFont(font);
            const QFontMetrics metrics(control->font());
            QCOMPARE(control->sizeHint().width(), metrics.horizontalAdvance(text) + 53);
            QCOMPARE(control->sizeHint().height(), std::max(metrics.height(), 16) + room);
        }
        control->setText(text + u" and more"_s);
        QCOMPARE(control->sizeHint().width(),
                 QFontMetrics(control->font()).horizontalAdvance(text + u" and more"_s) + 53);
    }
}

void TestSelectionControl::hover()
{
    QFETCH(const SelectionMaker, make);
    ManualClock clock;
    const std::unique_ptr<SelectionControl> control(make(u"A"_s));
    enter(*control);
    const auto progress = [&] { return control->hoverProgress(); };
    QCOMPARE(departure(clock, { 0.0, 1.0, kHoverDuration, QEasingCurve::Linear }, progress),
             QString());
    leave(*control);
    QCOMPARE(departure(clock, { 1.0, 0.0, kHoverDuration, QEasingCurve::Linear }, progress),
             QString());
    QVERIFY(!control->isChecked());
}

void TestSelectionControl::hoverTurnsBackFromWhereItIs()
{
    QFETCH(const SelectionMaker, make);
    ManualClock clock;
    const std::unique_ptr<SelectionControl> control(make(u"A"_s));
    enter(*control);
    clock.pass(60);
    const double turn = control->hoverProgress();
    QVERIFY(turn > 0.3 && turn < 0.5);
    leave(*control);
    QCOMPARE(departure(clock, { turn, 0.0, kHoverDuration, QEasingCurve::Linear },
                       [&] { return control->hoverProgress(); }),
             QString());
    enter(*control);
    clock.pass(kHoverDuration);
    QCOMPARE(control->hoverProgress(), 1.0);
}

void TestSelectionControl::themeChangeRepaints()
{
    QFETCH(const SelectionMaker, make);
    const std::unique_ptr<SelectionControl> control(make(u"A"_s));
    PaintWatch watch(*control);
    ThemeManager::instance().setDarkMode(true);
    QVERIFY(watch.seesRepaint());
}

void TestSelectionControl::settingAPropertyRepaints()
{
    QFETCH(const SelectionMaker, make);
    QFETCH(const QByteArray, progress);
    const std::unique_ptr<SelectionControl> control(make(u"A"_s));
    PaintWatch watch(*control);
    control->setHoverProgress(0.5);
    QCOMPARE(control->hoverProgress(), 0.5);
    QVERIFY(watch.seesRepaint());
    QVERIFY(control->setProperty(progress, 0.5));
    QCOMPARE(control->property(progress).toDouble(), 0.5);
    QVERIFY(watch.seesRepaint());
    QVERIFY(!control->isChecked()); // what is painted says nothing about what is chosen
}

void TestSelectionControl::spaceToggles()
{
    QFETCH(const SelectionMaker, make);
    const Window window(make);
    const QSignalSpy toggled(window.control, &QAbstractButton::toggled);
    QTest::keyClick(window.first, Qt::Key_Tab);
    QVERIFY(window.control->hasFocus());
    QTest::keyClick(window.control, Qt::Key_Space);
    QVERIFY(window.control->isChecked());
    QTest::keyClick(window.control, Qt::Key_Space);
    QVERIFY(!window.control->isChecked());
    QCOMPARE(toggled.count(), 2);
    window.control->setEnabled(false);
    QTest::keyClick(window.control, Qt::Key_Space);
    QCOMPARE(toggled.count(), 2);
}

void TestSelectionControl::clickAnywhereInTheRowToggles()
{
    QFETCH(const SelectionMaker, make);
    const Window window(make);
    const QSignalSpy clicked(window.control, &QAbstractButton::clicked);
    for (const QPoint &point : { QPoint(1, 1), QPoint(17, 20), QPoint(198, 38) })
        QTest::mouseClick(window.control, Qt::LeftButton, {}, point);
    QCOMPARE(clicked.count(), 3);
    QVERIFY(window.control->isChecked());
}

void TestSelectionControl::ringForTheKeyboardOnly()
{
    QFETCH(const SelectionMaker, make);
    const Window window(make);
    QVERIFY(!window.ringIsSeen());
    QTest::keyClick(window.first, Qt::Key_Tab);
    QVERIFY(window.control->hasFocus());
    QVERIFY(window.ringIsSeen());
    QTest::keyClick(window.control, Qt::Key_Space);
    QVERIFY(window.ringIsSeen());
    QTest::keyClick(window.control, Qt::Key_Backtab);
    QVERIFY(window.first->hasFocus());
    QVERIFY(!window.ringIsSeen());

    QTest::mouseClick(window.control, Qt::LeftButton);
    QVERIFY(window.control->hasFocus());
    QVERIFY(!window.ringIsSeen());
    window.first->setFocus();
    window.control->setFocus();
    QVERIFY(window.control->hasFocus());
    QVERIFY(!window.ringIsSeen());
}

void TestSelectionControl::focusedElsewhereWhileTheWindowIsInTheBackground()
{
    QFETCH(const SelectionMaker, make);
    Window window(make);
    QTest::keyClick(window.first, Qt::Key_Tab);
    QVERIFY(window.ringIsSeen());
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    window.first->setFocus();
    window.widget.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window.widget));
    QVERIFY(window.first->hasFocus());
    QVERIFY(!window.ringIsSeen());
}

void TestSelectionControl::ringNeedsNoRoom()
{
    QFETCH(const SelectionMaker, make);
    const Window window(make);
    const QSize before = window.control->sizeHint();
    QTest::keyClick(window.first, Qt::Key_Tab);
    QCOMPARE(window.control->sizeHint(), before);
    const QImage picture = grabWidget(*window.control, 8.0);
    QCOMPARE(inkRect(picture, themedColor(u"@INS_ACCENT"_s)), QRectF({}, kSize));
    // It follows the corners of the plate, which the stroke's middle line meets here.
    const double onStroke = 0.75 + 8.0 * (1.0 - M_SQRT1_2);
    QVERIFY(colourAt(picture, { onStroke, onStroke }).alpha() > 250);
    QCOMPARE(colourAt(picture, { onStroke - 0.8, onStroke - 0.8 }).alpha(), 0);
}

void TestSelectionControl::goesWhileItIsAnimated()
{
    QFETCH(const SelectionMaker, make);
    ManualClock clock;
    {
        const std::unique_ptr<SelectionControl> control(make(u"A"_s));
        enter(*control);
        control->setChecked(true);
        clock.pass(50);
        QVERIFY(control->hoverProgress() > 0.0);
    }
    QTRY_VERIFY_WITH_TIMEOUT(!clock.isRunning(), 10000);
}

QTEST_MAIN(TestSelectionControl)
#include "tst_selectioncontrol.moc"
