#include "pages/manualclock.h"
#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/course.h"
#include "widgets/look.h"
#include "widgets/togglecheckbox.h"

#include <QMetaProperty>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kDuration = 180;
constexpr int kHeight = 32;
/// So many device pixels per pixel that strokes have solid insides and clear edges.
constexpr double kMagnified = 16.0;

constexpr QPointF kBox(9, (kHeight - 16) / 2.0);

Course course(double from, double to)
{
    return { from, to, kDuration, QEasingCurve::OutCubic };
}

/// `box` at `progress` of its tick, the box's own picture and nothing else.
QImage pictureAt(double progress, double ratio = kMagnified)
{
    ToggleCheckbox box(u""_s);
    box.resize(100, kHeight);
    box.setCheckProgress(progress);
    return grabWidget(box, ratio);
}

} // namespace

class TestToggleCheckbox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void property();
    void checking();
    void unchecking();
    void turnsBackFromWhereItIs();
    void checkedBeforeItIsShown();
    void neighboursAreIndependent();
    void box_data();
    void box();
    void boxCorners();
    void boxIsInTheMiddle_data();
    void boxIsInTheMiddle();
    void boxTurnsAtOnce_data();
    void boxTurnsAtOnce();
    void tickRunsThroughItsPoints();
    void tickIsTwoWide();
    void tickHasRoundEndsAndCorner();
    void tickFadesInEarly_data();
    void tickFadesInEarly();
    void liesOnThePlate();
};

void TestToggleCheckbox::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestToggleCheckbox::property()
{
    const QMetaObject &meta = ToggleCheckbox::staticMetaObject;
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 1);
    const QMetaProperty property = meta.property(meta.propertyOffset());
    QCOMPARE(property.name(), "checkProgress");
    QCOMPARE(property.metaType(), QMetaType::fromType<double>());
    QVERIFY(property.isWritable());
    QVERIFY(meta.indexOfProperty("hoverProgress") >= 0);
}

void TestToggleCheckbox::checking()
{
    ManualClock clock;
    ToggleCheckbox box(u"A"_s);
    box.setChecked(true);
    QCOMPARE(departure(clock, course(0.0, 1.0), [&] { return box.checkProgress(); }), QString());
}

void TestToggleCheckbox::unchecking()
{
    ManualClock clock;
    ToggleCheckbox box(u"A"_s);
    box.setChecked(true);
    clock.pass(kDuration);
    box.setChecked(false);
    QCOMPARE(departure(clock, course(1.0, 0.0), [&] { return box.checkProgress(); }), QString());
}

void TestToggleCheckbox::turnsBackFromWhereItIs()
{
    ManualClock clock;
    ToggleCheckbox box(u"A"_s);
    box.setChecked(true);
    clock.pass(45);
    const double turn = box.checkProgress();
    QVERIFY(turn > 0.4 && turn < 0.7);
    box.setChecked(false);
    QCOMPARE(departure(clock, course(turn, 0.0), [&] { return box.checkProgress(); }), QString());
    box.setChecked(true);
    clock.pass(kDuration);
    QCOMPARE(box.checkProgress(), 1.0);
}

void TestToggleCheckbox::checkedBeforeItIsShown()
{
    ToggleCheckbox box(u"A"_s);
    box.setChecked(true);
    QVERIFY(box.isChecked());
    QTRY_COMPARE_WITH_TIMEOUT(box.checkProgress(), 1.0, 10000);
}

void TestToggleCheckbox::neighboursAreIndependent()
{
    QWidget parent;
    ToggleCheckbox first(u"First"_s, &parent);
    ToggleCheckbox second(u"Second"_s, &parent);
    first.click();
    second.click();
    QVERIFY(first.isChecked());
    QVERIFY(second.isChecked());
    first.click();
    QVERIFY(!first.isChecked());
}

void TestToggleCheckbox::box_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<double>("progress");
    QTest::addColumn<QString>("border");
    QTest::addColumn<QString>("fill");
    QTest::newRow("light") << false << 0.0 << u"@INS_LINE2"_s << u"@INS_BG"_s;
    QTest::newRow("light, checked") << false << 1.0 << u"@INS_ACCENT"_s << u"@INS_ACCENT"_s;
    QTest::newRow("dark") << true << 0.0 << u"@INS_LINE2"_s << u"@INS_BG"_s;
    QTest::newRow("dark, checked") << true << 1.0 << u"@INS_ACCENT"_s << u"@INS_ACCENT"_s;
}

void TestToggleCheckbox::box()
{
    QFETCH(const bool, dark);
    QFETCH(const double, progress);
    QFETCH(const QString, border);
    QFETCH(const QString, fill);
    ThemeManager::instance().setDarkMode(dark);
    const QImage picture = pictureAt(progress);
    // A stroke of 1.5 about the box.
    QCOMPARE(inkRect(picture), QRectF(kBox, QSizeF(16, 16)).adjusted(-0.75, -0.75, 0.75, 0.75));
    for (double distance : { -0.7, 0.0, 0.7 }) {
        QCOMPARE(difference(colourAt(picture, kBox + QPointF(distance, 8)), themedColor(border)),
                 QString());
        QCOMPARE(
            difference(colourAt(picture, kBox + QPointF(8, 16 - distance)), themedColor(border)),
            QString());
    }
    for (const QPointF &point : { QPointF(0.85, 10), QPointF(2, 2), QPointF(14.5, 12) })
        QCOMPARE(difference(colourAt(picture, kBox + point), themedColor(fill)), QString());
    for (double ratio : { 1.0, 2.0 }) {
        const QImage small = pictureAt(progress, ratio);
        QCOMPARE(difference(colourAt(small, kBox + QPointF(2.5, 2.5)), themedColor(fill)),
                 QString());
        QCOMPARE(difference(colourAt(small, kBox + QPointF(0, 8)), themedColor(border),
                            ratio == 2.0 ? 2 : 40),
                 QString());
    }
}

void TestToggleCheckbox::boxCorners()
{
    // Radius 4, and so 4.75 at the stroke's outer edge.
    const QImage picture = pictureAt(0.0);
    const QColor line = themedColor(u"@INS_LINE2"_s);
    const double outer = 4.0 - 4.75 * M_SQRT1_2;
    const double inner = 4.0 - 3.25 * M_SQRT1_2;
    for (const QPointF &corner :
         { QPointF(0, 0), QPointF(16, 0), QPointF(0, 16), QPointF(16, 16) }) {
        const auto inwards = [corner](double way) {
            return kBox + corner
                + QPointF(corner.x() > 0 ? -way : way, corner.y() > 0 ? -way : way);
        };
        QCOMPARE(colourAt(picture, inwards(outer - 0.15)).alpha(), 0);
        QCOMPARE(difference(colourAt(picture, inwards(outer + 0.15)), line), QString());
        QCOMPARE(difference(colourAt(picture, inwards(inner - 0.15)), line), QString());
        QCOMPARE(difference(colourAt(picture, inwards(inner + 0.15)), themedColor(u"@INS_BG"_s)),
                 QString());
    }
}

void TestToggleCheckbox::boxIsInTheMiddle_data()
{
    QTest::addColumn<int>("height");
    QTest::newRow("even") << 32;
    QTest::newRow("odd, on a half pixel") << 35;
    QTest::newRow("lower than the box") << 10;
    QTest::newRow("high") << 80;
}

void TestToggleCheckbox::boxIsInTheMiddle()
{
    QFETCH(const int, height);
    ToggleCheckbox box(u""_s);
    box.resize(100, height);
    const QRectF ink = inkRect(grabWidget(box, kMagnified));
    QCOMPARE(ink.left(), 8.25);
    QCOMPARE(ink.top(), qMax((height - 16) / 2.0 - 0.75, 0.0));
    QCOMPARE(ink.bottom(), qMin((height + 16) / 2.0 + 0.75, double(height)));
}

void TestToggleCheckbox::boxTurnsAtOnce_data()
{
    QTest::addColumn<double>("progress");
    QTest::addColumn<bool>("checked");
    QTest::newRow("at rest") << 0.0 << false;
    QTest::newRow("just not visible") << 0.001 << false;
    QTest::newRow("just visible") << 0.0011 << true;
    QTest::newRow("half-way") << 0.5 << true;
}

void TestToggleCheckbox::boxTurnsAtOnce()
{
    QFETCH(const double, progress);
    QFETCH(const bool, checked);
    const QImage picture = pictureAt(progress);
    const QColor accent = themedColor(u"@INS_ACCENT"_s);
    QCOMPARE(difference(colourAt(picture, kBox + QPointF(0, 8)),
                        checked ? accent : themedColor(u"@INS_LINE2"_s)),
             QString());
    QCOMPARE(difference(colourAt(picture, kBox + QPointF(2, 14)),
                        checked ? accent : themedColor(u"@INS_BG"_s)),
             QString());
}

void TestToggleCheckbox::tickRunsThroughItsPoints()
{
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        const QImage picture = pictureAt(1.0);
        const QPointF start(4.0, 8.2);
        const QPointF corner(6.7, 11.2);
        const QPointF end(12.0, 4.8);
        for (const QPointF &point :
             { start, (start + corner) / 2, corner, (corner + end) / 2, end })
            QCOMPARE(difference(colourAt(picture, kBox + point), Qt::white), QString());
        // The stroke, half its width beyond the outermost points.
        const QRectF ink = inkRect(picture, Qt::white);
        QVERIFY(std::abs(ink.left() - (kBox.x() + 3.0)) < 0.1);
        QVERIFY(std::abs(ink.right() - (kBox.x() + 13.0)) < 0.1);
        QVERIFY(std::abs(ink.top() - (kBox.y() + 3.8)) < 0.1);
        QVERIFY(std::abs(ink.bottom() - (kBox.y() + 12.2)) < 0.1);
    }
}

void TestToggleCheckbox::tickIsTwoWide()
{
    const QImage picture = pictureAt(1.0);
    const QColor accent = themedColor(u"@INS_ACCENT"_s);
    const QPointF middle = (QPointF(6.7, 11.2) + QPointF(12.0, 4.8)) / 2;
    const QPointF across = QPointF(6.4, 5.3) / std::hypot(6.4, 5.3);
    for (double side : { -1.0, 1.0 }) {
        QCOMPARE(difference(colourAt(picture, kBox + middle + across * 0.85 * side), Qt::white),
                 QString());
        QCOMPARE(difference(colourAt(picture, kBox + middle + across * 1.15 * side), accent),
                 QString());
    }
}

void TestToggleCheckbox::tickHasRoundEndsAndCorner()
{
    const QImage picture = pictureAt(1.0);
    const QColor accent = themedColor(u"@INS_ACCENT"_s);
    const QPointF along = QPointF(5.3, -6.4) / std::hypot(5.3, 6.4);
    const QPointF across(-along.y(), along.x());
    const QPointF end = kBox + QPointF(12.0, 4.8);
    QCOMPARE(difference(colourAt(picture, end + along * 0.8), Qt::white), QString());
    QCOMPARE(difference(colourAt(picture, end + (along + across) * 0.85), accent), QString());
    // Straight below the corner a pointed join would reach 1.5, a cut one 0.65.
    const QPointF corner = kBox + QPointF(6.7, 11.2);
    QCOMPARE(difference(colourAt(picture, corner + QPointF(0.0, 0.85)), Qt::white), QString());
    QCOMPARE(difference(colourAt(picture, corner + QPointF(0.0, 1.15)), accent), QString());
}

void TestToggleCheckbox::tickFadesInEarly_data()
{
    QTest::addColumn<double>("progress");
    QTest::addColumn<double>("opacity");
    QTest::newRow("just visible") << 0.0011 << 0.0;
    QTest::newRow("quarter") << 0.25 << 0.35;
    QTest::newRow("half") << 0.5 << 0.7;
    QTest::newRow("nearly there") << 0.7 << 0.98;
    QTest::newRow("there before the end") << 0.715 << 1.0;
    QTest::newRow("at the end") << 1.0 << 1.0;
}

void TestToggleCheckbox::tickFadesInEarly()
{
    QFETCH(const double, progress);
    QFETCH(const double, opacity);
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        const QColor expected = blended(Qt::white, opacity, themedColor(u"@INS_ACCENT"_s));
        // At the corner, where the stroke meets itself, it is no denser than elsewhere.
        for (const QPointF &point : { QPointF(6.7, 11.2), QPointF(9.35, 8.0) })
            QCOMPARE(difference(colourAt(pictureAt(progress), kBox + point), expected), QString());
        QCOMPARE(
            difference(colourAt(pictureAt(progress, 2.0), kBox + QPointF(9.35, 8.0)), expected, 4),
            QString());
    }
}

void TestToggleCheckbox::liesOnThePlate()
{
    ToggleCheckbox box(u""_s);
    box.resize(100, kHeight);
    box.setHoverProgress(1.0);
    const QImage picture = grabWidget(box, kMagnified);
    QCOMPARE(difference(colourAt(picture, kBox + QPointF(8, 8)), themedColor(u"@INS_BG"_s)),
             QString());
    QCOMPARE(difference(colourAt(picture, kBox - QPointF(2, 2)), themedColor(u"@INS_PANEL"_s)),
             QString());
}

QTEST_MAIN(TestToggleCheckbox)
#include "tst_togglecheckbox.moc"
