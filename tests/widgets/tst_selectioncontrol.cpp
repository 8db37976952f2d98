// The radio option and the check box: what they share, each row one of the two, then the indicator
// of each.

#include "pages/lightthemetest.h"
#include "pages/manualclock.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/course.h"
#include "widgets/look.h"
#include "widgets/radiooption.h"
#include "widgets/togglecheckbox.h"

#include <QEnterEvent>
#include <QFontMetrics>
#include <QTest>

#include <cmath>
#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

using SelectionMaker = std::function<SelectionControl *(const QString &text)>;

/// One row for each of the two: how to make one, its own progress property and how long that takes,
/// and what its preferred height has on top of the text's.
void addSelectionKinds()
{
    QTest::addColumn<SelectionMaker>("make");
    QTest::addColumn<QByteArray>("progress");
    QTest::addColumn<int>("duration");
    QTest::addColumn<int>("room");
    const SelectionMaker radioOption = [](const QString &text) { return new RadioOption(text); };
    const SelectionMaker checkBox = [](const QString &text) { return new ToggleCheckbox(text); };
    QTest::newRow("radio option") << radioOption << QByteArray("selectProgress") << 160 << 14;
    QTest::newRow("check box") << checkBox << QByteArray("checkProgress") << 180 << 16;
}

constexpr int kHoverDuration = 150;
constexpr QSize kSize(200, 40);
/// So many device pixels per pixel that strokes have solid insides and clear edges.
constexpr double kMagnified = 16.0;

/// The indicator, in a control of the usual size.
constexpr QRectF kBox(9, 12, 16, 16);
constexpr QPointF kCentre(17, 20);

// The tick, in the box.
constexpr QPointF kStart(4.0, 8.2);
constexpr QPointF kCorner(6.7, 11.2);
constexpr QPointF kEnd(12.0, 4.8);

QColor accent()
{
    return themedColor(u"@INS_ACCENT"_s);
}

QColor ground()
{
    return themedColor(u"@INS_BG"_s);
}

QColor line()
{
    return themedColor(u"@INS_LINE2"_s);
}

/// An indicator alone, at `progress` of its dot or tick.
template <typename Control>
QImage indicator(double progress, double ratio = kMagnified, int height = kSize.height())
{
    Control control((QString()));
    control.resize(kSize.width(), height);
    if constexpr (std::is_same_v<Control, RadioOption>)
        control.setSelectProgress(progress);
    else
        control.setCheckProgress(progress);
    return grabWidget(control, ratio);
}

} // namespace

class TestSelectionControl : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void preferredSize_data() { addSelectionKinds(); }
    void preferredSize();
    void followsItsCheckedState_data() { addSelectionKinds(); }
    void followsItsCheckedState();
    void lightsUpUnderThePointer_data() { addSelectionKinds(); }
    void lightsUpUnderThePointer();
    void focusRingFollowsThePlate_data() { addSelectionKinds(); }
    void focusRingFollowsThePlate();
    void plate_data() { addSelectionKinds(); }
    void plate();
    void longTextIsCut_data() { addSelectionKinds(); }
    void longTextIsCut();
    void indicatorIsInTheMiddle();
    void indicatorChangesAtOnce_data();
    void indicatorChangesAtOnce();
    void dot();
    void boxCorners();
    void tick();
    void tickFadesInEarly();
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
    const QPointF point(20, 20);
    QEnterEvent enter(point, point, point);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(control.get(), &enter);
    QCOMPARE(departure(clock, { 0.0, 1.0, kHoverDuration, QEasingCurve::Linear }, progress),
             QString());
    QCoreApplication::sendEvent(control.get(), &leave);
    QCOMPARE(departure(clock, { 1.0, 0.0, kHoverDuration, QEasingCurve::Linear }, progress),
             QString());
    QVERIFY(!control->isChecked());
}

void TestSelectionControl::focusRingFollowsThePlate()
{
    QFETCH(const SelectionMaker, make);
    const std::unique_ptr<SelectionControl> control(make({}));
    control->resize(kSize);
    control->show();
    control->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(control.get()));
    control->clearFocus(); // which it has got with the window
    control->setFocus(Qt::TabFocusReason);
    const QImage picture = grabWidget(*control, 8.0);
    QCOMPARE(inkRect(picture, accent()), QRectF({}, kSize));
    // The plate's corners, where the stroke's middle line meets them.
    const double onStroke = 0.75 + 8.0 * (1.0 - M_SQRT1_2);
    QVERIFY(colourAt(picture, { onStroke, onStroke }).alpha() > 250);
    QCOMPARE(colourAt(picture, { onStroke - 0.8, onStroke - 0.8 }).alpha(), 0);
}

void TestSelectionControl::plate()
{
    QFETCH(const SelectionMaker, make);
    const std::unique_ptr<SelectionControl> control(make({}));
    control->resize(kSize);
    const QImage bare = grabWidget(*control);
    control->setHoverProgress(0.001);
    QCOMPARE(grabWidget(*control), bare);
    const QList<QPointF> edges { { 198, 20 }, { 1, 20 }, { 100, 0.25 }, { 100, 39.75 } };
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        const QColor panel = themedColor(u"@INS_PANEL"_s);
        for (double progress : { 0.25, 0.5, 1.0 }) {
            control->setHoverProgress(progress);
            const QImage picture = grabWidget(*control, 2.0);
            QCOMPARE(differenceAt(picture, edges, faded(panel, progress)), QString());
            QCOMPARE(differenceAt(picture, { kCentre }, ground()), QString());
        }
    }
    // Four corners of radius 8 leave out this much, and one of 7.8 or 8.2 would not.
    const double leftOut = (4.0 - M_PI) * 8.0 * 8.0;
    const double area = kSize.width() * kSize.height() - leftOut;
    QVERIFY(std::abs(paintedArea(grabWidget(*control, 4.0)) - area) < 2.0);
}

void TestSelectionControl::longTextIsCut()
{
    QFETCH(const SelectionMaker, make);
    const std::unique_ptr<SelectionControl> control(make(QString(60, u'█')));
    control->resize(kSize);
    const QImage picture = grabWidget(*control, 2.0);
    const QRectF ink = inkRect(picture.copy(2 * 30, 0, 2 * 170, 2 * 40)).translated(30, 0);
    QCOMPARE(ink.left(), 35.0);
    QCOMPARE(ink.right(), kSize.width() - 9.0);
}

// A stroke of 1.5 about a box or circle of 16.
void TestSelectionControl::indicatorIsInTheMiddle()
{
    for (int height : { 30, 33, 12 }) { // on a whole pixel, on half of one, and cut
        const double top = qMax((height - 16) / 2.0 - 0.75, 0.0);
        const QRectF expected(8.25, top, 17.5, height - 2 * top);
        QCOMPARE(inkRect(indicator<RadioOption>(0.0, kMagnified, height)), expected);
        QCOMPARE(inkRect(indicator<ToggleCheckbox>(0.0, kMagnified, height)), expected);
    }
}

void TestSelectionControl::indicatorChangesAtOnce_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<double>("progress");
    QTest::addColumn<bool>("chosen");
    QTest::newRow("just not visible") << false << 0.001 << false;
    QTest::newRow("just visible") << false << 0.0011 << true;
    QTest::newRow("dark") << true << 0.0 << false;
    QTest::newRow("dark, chosen") << true << 1.0 << true;
}

void TestSelectionControl::indicatorChangesAtOnce()
{
    QFETCH(const bool, dark);
    QFETCH(const double, progress);
    QFETCH(const bool, chosen);
    ThemeManager::instance().setDarkMode(dark);
    const QColor pen = chosen ? accent() : line();
    // From one edge of the stroke to the other, then what is inside, away from dot and tick.
    const QList<QPointF> stroke { { 8.4, 20 }, { 9, 20 }, { 9.6, 20 }, { 17, 27.4 }, { 17, 28.6 } };
    const QList<QPointF> inside { { 9.9, 20.5 }, { 12, 21 }, { 16, 26 } };
    const QImage round = indicator<RadioOption>(progress);
    QCOMPARE(differenceAt(round, stroke, pen), QString());
    QCOMPARE(differenceAt(round, inside, ground()), QString());
    const QPointF diagonal = QPointF(8, 8) * M_SQRT1_2;
    QCOMPARE(differenceAt(round, { kCentre - diagonal, kCentre + diagonal }, pen), QString());
    const QImage square = indicator<ToggleCheckbox>(progress);
    QCOMPARE(differenceAt(square, stroke, pen), QString());
    QCOMPARE(differenceAt(square, inside, chosen ? accent() : ground()), QString());
}

void TestSelectionControl::dot()
{
    for (double progress : { 0.25, 0.5, 1.0 }) {
        const QImage picture = indicator<RadioOption>(progress);
        const double radius = 4.0 * progress;
        QCOMPARE(differenceAt(picture, { kCentre }, accent()), QString());
        for (const QPointF &way : { QPointF(1, 0), QPointF(-1, 0), QPointF(0, 1), QPointF(0, -1),
                                    QPointF(M_SQRT1_2, M_SQRT1_2) }) {
            QCOMPARE(differenceAt(picture, { kCentre + way * (radius - 0.2) }, accent()),
                     QString());
            QCOMPARE(differenceAt(picture, { kCentre + way * (radius + 0.2) }, ground()),
                     QString());
        }
    }
}

void TestSelectionControl::boxCorners()
{
    // Radius 4, and so 4.75 at the stroke's outer edge.
    const QImage picture = indicator<ToggleCheckbox>(0.0);
    const double outer = 4.0 - 4.75 * M_SQRT1_2;
    const double inner = 4.0 - 3.25 * M_SQRT1_2;
    const std::array corners { kBox.topLeft(), kBox.topRight(), kBox.bottomLeft(),
                               kBox.bottomRight() };
    for (const QPointF &corner : corners) {
        const auto inwards = [corner](double way) {
            return corner
                + QPointF(corner.x() > kCentre.x() ? -way : way,
                          corner.y() > kCentre.y() ? -way : way);
        };
        QCOMPARE(colourAt(picture, inwards(outer - 0.15)).alpha(), 0);
        QCOMPARE(differenceAt(picture, { inwards(outer + 0.15), inwards(inner - 0.15) }, line()),
                 QString());
        QCOMPARE(differenceAt(picture, { inwards(inner + 0.15) }, ground()), QString());
    }
}

void TestSelectionControl::tick()
{
    const QImage picture = indicator<ToggleCheckbox>(1.0);
    for (const QPointF &point :
         { kStart, (kStart + kCorner) / 2, kCorner, (kCorner + kEnd) / 2, kEnd })
        QCOMPARE(differenceAt(picture, { kBox.topLeft() + point }, Qt::white), QString());
    // Half the width of its stroke beyond the outermost points.
    const QRectF ink = inkRect(picture, Qt::white).translated(-kBox.topLeft());
    QVERIFY(std::abs(ink.left() - 3.0) < 0.1);
    QVERIFY(std::abs(ink.right() - 13.0) < 0.1);
    QVERIFY(std::abs(ink.top() - 3.8) < 0.1);
    QVERIFY(std::abs(ink.bottom() - 12.2) < 0.1);

    const QPointF along = QPointF(5.3, -6.4) / std::hypot(5.3, 6.4);
    const QPointF across(-along.y(), along.x());
    const QPointF middle = kBox.topLeft() + (kCorner + kEnd) / 2;
    const QPointF end = kBox.topLeft() + kEnd;
    // Straight below the corner a pointed join would reach 1.5, a cut one 0.65.
    const QPointF corner = kBox.topLeft() + kCorner;
    QCOMPARE(differenceAt(picture,
                          { middle + across * 0.85, middle - across * 0.85, end + along * 0.8,
                            corner + QPointF(0, 0.85) },
                          Qt::white),
             QString());
    QCOMPARE(differenceAt(picture,
                          { middle + across * 1.15, middle - across * 1.15,
                            end + (along + across) * 0.85, corner + QPointF(0, 1.15) },
                          accent()),
             QString());
}

// It is there before the end. At the corner, where the stroke meets itself, it is no denser than
// elsewhere.
void TestSelectionControl::tickFadesInEarly()
{
    const QList<QPointF> places { kBox.topLeft() + kCorner, kBox.topLeft() + QPointF(9.35, 8) };
    const QMap<double, double> opacities {
        { 0.0011, 0.0 }, { 0.5, 0.7 }, { 0.7, 0.98 }, { 0.715, 1.0 }
    };
    for (const auto [progress, opacity] : opacities.asKeyValueRange()) {
        const QImage picture = indicator<ToggleCheckbox>(progress);
        QCOMPARE(differenceAt(picture, places, blended(Qt::white, opacity, accent())), QString());
    }
}

QTEST_MAIN(TestSelectionControl)
#include "tst_selectioncontrol.moc"
