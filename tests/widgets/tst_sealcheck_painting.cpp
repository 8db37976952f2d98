#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/look.h"
#include "widgets/sealcheck.h"

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The side that one pixel of the design measures one pixel at.
constexpr QSize kDesign(48, 48);
constexpr double kMagnified = 16.0;

// The check mark, in the design.
constexpr QPointF kStart(15, 25);
constexpr QPointF kCorner(21, 31);
constexpr QPointF kEnd(34, 17);

QImage picture(double circle, double check, QSize size = kDesign, double ratio = kMagnified)
{
    SealCheck seal;
    seal.resize(size);
    seal.setCircleProgress(circle);
    seal.setCheckProgress(check);
    return grabWidget(seal, ratio);
}

QColor disc()
{
    return themedColor(u"@INS_SEAL_BG"_s);
}

QColor mark()
{
    return themedColor(u"@INS_OK"_s);
}

double length(const QPointF &way)
{
    return std::hypot(way.x(), way.y());
}

/// The point of the mark's middle line at `fraction` of its length.
QPointF pointOfMark(double fraction)
{
    const double first = length(kCorner - kStart);
    const double way = fraction * (first + length(kEnd - kCorner));
    if (way <= first)
        return kStart + (kCorner - kStart) * way / first;
    return kCorner + (kEnd - kCorner) * (way - first) / length(kEnd - kCorner);
}

} // namespace

class TestSealCheckPainting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void nothingWithoutTheDisc_data();
    void nothingWithoutTheDisc();
    void disc_data();
    void disc();
    void discInBothThemes();
    void markThreshold();
    void markInBothThemes();
    void markIsOpaqueOnAFaintDisc();
    void markKeepsItsPlaceWhileTheDiscGrows();
    void markWidth();
    void markEnds();
    void markGrows_data();
    void markGrows();
    void markGrowsInSteps();
    void overshootOfTheMark();
    void usualSize();
    void otherShapes_data();
    void otherShapes();
};

void TestSealCheckPainting::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestSealCheckPainting::nothingWithoutTheDisc_data()
{
    QTest::addColumn<double>("circle");
    QTest::newRow("never played") << 0.0;
    QTest::newRow("at the threshold") << 0.001;
    QTest::newRow("below nothing") << -0.1;
}

void TestSealCheckPainting::nothingWithoutTheDisc()
{
    QFETCH(const double, circle);
    QCOMPARE(pixelsUnlike(picture(circle, 1.0, kDesign, 2.0), Qt::transparent), 0);
    QVERIFY(pixelsUnlike(picture(0.0011, 1.0, kDesign, 2.0), Qt::transparent) > 0);
}

void TestSealCheckPainting::disc_data()
{
    QTest::addColumn<double>("progress");
    QTest::addColumn<double>("opacity");
    QTest::newRow("quarter") << 0.25 << 0.25;
    QTest::newRow("half") << 0.5 << 0.5;
    QTest::newRow("in place") << 1.0 << 1.0;
    QTest::newRow("overshoot") << 1.05 << 1.0;
}

void TestSealCheckPainting::disc()
{
    QFETCH(const double, progress);
    QFETCH(const double, opacity);
    const QPointF centre(24, 24);
    const double radius = 22.0 * progress;
    for (double ratio : { 1.0, 2.0, kMagnified }) {
        const QImage image = picture(progress, 0.0, kDesign, ratio);
        const QColor expected = faded(::disc(), opacity);
        QCOMPARE(difference(colourAt(image, centre), expected), QString());
        QVERIFY(std::abs(paintedArea(image) - M_PI * radius * radius * opacity)
                < 2.0 + 8.0 / ratio);
        for (const QPointF &way :
             { QPointF(1, 0), QPointF(0, 1), QPointF(-M_SQRT1_2, M_SQRT1_2) }) {
            const double edge = 1.0 / ratio + 0.2;
            QCOMPARE(difference(colourAt(image, centre + way * (radius - edge)), expected),
                     QString());
            if (radius + edge < 24.0)
                QCOMPARE(colourAt(image, centre + way * (radius + edge)).alpha(), 0);
        }
    }
}

void TestSealCheckPainting::discInBothThemes()
{
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        for (double ratio : { 1.0, 2.0 }) {
            QCOMPARE(difference(colourAt(picture(1.0, 0.0, kDesign, ratio), { 24, 24 }), ::disc()),
                     QString());
        }
    }
}

void TestSealCheckPainting::markThreshold()
{
    const QImage bare = picture(1.0, 0.0);
    QCOMPARE(picture(1.0, 0.001), bare);
    QVERIFY(picture(1.0, 0.0011) != bare); // the round end of the stroke is there from the start
    QCOMPARE(difference(colourAt(picture(1.0, 0.0011), kStart), mark()), QString());
}

void TestSealCheckPainting::markInBothThemes()
{
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        for (double ratio : { 1.0, 2.0 }) {
            const QImage image = picture(1.0, 1.0, kDesign, ratio);
            for (double fraction : { 0.0, 0.15, 0.3, 0.6, 1.0 }) {
                const QColor colour = colourAt(image, pointOfMark(fraction));
                QCOMPARE(difference(colour, mark()), QString());
            }
        }
    }
}

void TestSealCheckPainting::markIsOpaqueOnAFaintDisc()
{
    const QImage image = picture(0.5, 1.0);
    QCOMPARE(difference(colourAt(image, { 24, 22 }), faded(::disc(), 0.5)), QString());
    QCOMPARE(difference(colourAt(image, pointOfMark(0.2)), mark()), QString());
}

void TestSealCheckPainting::markKeepsItsPlaceWhileTheDiscGrows()
{
    const QRectF ink = inkRect(picture(1.0, 1.0), mark());
    QCOMPARE(inkRect(picture(0.6, 1.0), mark()), ink);
    QCOMPARE(inkRect(picture(1.08, 1.0), mark()), ink);
}

void TestSealCheckPainting::markWidth()
{
    const QImage image = picture(1.0, 1.0);
    const QPointF middle = (kCorner + kEnd) / 2;
    const QPointF along = (kEnd - kCorner) / length(kEnd - kCorner);
    const QPointF across(-along.y(), along.x());
    for (double side : { -1.0, 1.0 }) {
        QCOMPARE(difference(colourAt(image, middle + across * 1.5 * side), mark()), QString());
        QCOMPARE(difference(colourAt(image, middle + across * 1.7 * side), ::disc()), QString());
    }
}

void TestSealCheckPainting::markEnds()
{
    const QImage image = picture(1.0, 1.0);
    const QPointF along = (kEnd - kCorner) / length(kEnd - kCorner);
    const QPointF across(-along.y(), along.x());
    QCOMPARE(difference(colourAt(image, kEnd + along * 1.5), mark()), QString());
    QCOMPARE(difference(colourAt(image, kEnd + along * 1.7), ::disc()), QString());
    for (double side : { -1.0, 1.0 }) { // a square end would have corners
        const QPointF corner = kEnd + (along + across * side) * 1.35;
        QCOMPARE(difference(colourAt(image, corner), ::disc()), QString());
    }
    QCOMPARE(difference(colourAt(image, kStart - QPointF(1.05, 1.05)), mark()), QString());
    QCOMPARE(difference(colourAt(image, kStart - QPointF(1.2, 1.2)), ::disc()), QString());
}

void TestSealCheckPainting::markGrows_data()
{
    QTest::addColumn<double>("progress");
    QTest::newRow("before the corner") << 0.2;
    QTest::newRow("beyond the corner") << 0.4;
    QTest::newRow("half") << 0.5;
    QTest::newRow("three quarters") << 0.75;
    QTest::newRow("nearly all") << 0.95;
    QTest::newRow("all") << 1.0;
}

void TestSealCheckPainting::markGrows()
{
    QFETCH(const double, progress);
    const QImage image = picture(1.0, progress);
    const QPointF tip = pointOfMark(progress);
    const QPointF way = progress < 0.3 ? kCorner - kStart : kEnd - kCorner;
    const QPointF along = way / length(way);
    for (double fraction = 0.0; fraction <= progress; fraction += 0.05) {
        QCOMPARE(difference(colourAt(image, pointOfMark(fraction)), mark()), QString());
    }
    QCOMPARE(difference(colourAt(image, tip + along * 1.5), mark()), QString());
    QCOMPARE(difference(colourAt(image, tip + along * 1.7), ::disc()), QString());
}

// The corner lies between two of the 24 steps, so that the stroke cuts it: its lowest point would
// be at 32.6 otherwise.
void TestSealCheckPainting::markGrowsInSteps()
{
    const double lowest = qMax(pointOfMark(7.0 / 24.0).y(), pointOfMark(8.0 / 24.0).y()) + 1.6;
    QVERIFY(std::abs(inkRect(picture(1.0, 1.0), mark()).bottom() - lowest) < 0.08);
    // At three quarters one of the steps nearly meets it.
    const double nearly = pointOfMark(10.0 / 24.0 * 0.75).y() + 1.6;
    QVERIFY(std::abs(inkRect(picture(1.0, 0.75), mark()).bottom() - nearly) < 0.08);
}

void TestSealCheckPainting::overshootOfTheMark()
{
    // 24 steps of 1.2 / 24: the one beyond the end is not taken.
    const QImage image = picture(1.0, 1.2);
    QCOMPARE(difference(colourAt(image, kEnd), mark()), QString());
    const QRectF whole = inkRect(picture(1.0, 1.0), mark());
    const QRectF ink = inkRect(image, mark());
    QVERIFY(std::abs(ink.right() - whole.right()) < 0.07);
    QVERIFY(std::abs(ink.top() - whole.top()) < 0.07);
}

void TestSealCheckPainting::usualSize()
{
    const double scale = 46.0 / 48.0;
    for (double ratio : { 1.0, 2.0 }) {
        const QImage image = picture(1.0, 1.0, { 46, 46 }, ratio);
        for (double fraction : { 0.0, 0.2, 0.6, 1.0 }) {
            QCOMPARE(difference(colourAt(image, pointOfMark(fraction) * scale), mark()), QString());
        }
        const double radius = 22.0 * scale;
        QVERIFY(std::abs(paintedArea(image) - M_PI * radius * radius) < 10.0 / ratio);
    }
}

void TestSealCheckPainting::otherShapes_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("wide") << QSize(96, 48);
    QTest::newRow("high") << QSize(48, 96);
    QTest::newRow("large") << QSize(96, 96);
}

void TestSealCheckPainting::otherShapes()
{
    QFETCH(const QSize, size);
    const double sx = size.width() / 48.0;
    const double sy = size.height() / 48.0;
    const double s = qMin(sx, sy);
    const QImage bare = picture(1.0, 0.0, size, 8.0);
    const QRectF round = inkRect(bare);
    QVERIFY(std::abs(round.width() - 44.0 * s) < 0.3);
    QVERIFY(std::abs(round.height() - 44.0 * s) < 0.3);
    QVERIFY(length(round.center() - QPointF(24 * sx, 24 * sy)) < 0.2);

    const QImage image = picture(1.0, 1.0, size, 8.0);
    for (const QPointF &point : { kStart, (kStart + kCorner) / 2, (kCorner + kEnd) / 2, kEnd }) {
        const QPointF place(point.x() * sx, point.y() * sy);
        QCOMPARE(difference(colourAt(image, place), mark()), QString());
    }
    // The stroke is as wide as the smaller scale has it.
    const QRectF ink = inkRect(image, mark());
    QVERIFY(std::abs(ink.left() - (15 * sx - 1.6 * s)) < 0.2);
    QVERIFY(std::abs(ink.right() - (34 * sx + 1.6 * s)) < 0.2);
    QVERIFY(std::abs(ink.top() - (17 * sy - 1.6 * s)) < 0.2);
}

QTEST_MAIN(TestSealCheckPainting)
#include "tst_sealcheck_painting.moc"
