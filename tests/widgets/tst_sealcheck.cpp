#include "pages/lightthemetest.h"
#include "pages/manualclock.h"
#include "pages/timerwatch.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/course.h"
#include "widgets/look.h"
#include "widgets/paintwatch.h"
#include "widgets/sealcheck.h"

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

const QList<int> kOneShot { 280 };

const Course kDisc { 0.0, 1.0, 400, QEasingCurve::OutBack };
const Course kMark { 0.0, 1.0, 380, QEasingCurve::OutCubic };

/// The side at which one pixel of the design measures one pixel.
constexpr QSize kDesign(48, 48);
constexpr QPointF kCentre(24, 24);
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

QColor discColour()
{
    return themedColor(u"@INS_SEAL_BG"_s);
}

QColor markColour()
{
    return themedColor(u"@INS_OK"_s);
}

double length(const QPointF &way)
{
    return std::hypot(way.x(), way.y());
}

const QPointF kAlong = (kEnd - kCorner) / length(kEnd - kCorner);
const QPointF kAcross(-kAlong.y(), kAlong.x());

/// The point of the mark's middle line at `fraction` of its length.
QPointF pointOfMark(double fraction)
{
    const double first = length(kCorner - kStart);
    const double way = fraction * (first + length(kEnd - kCorner));
    if (way <= first)
        return kStart + (kCorner - kStart) * way / first;
    return kCorner + kAlong * (way - first);
}

} // namespace

class TestSealCheck : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void discPopsIn();
    void playsAgainFromTheStart();
    void nothingAtFirst();
    void disc();
    void markKeepsItsPlaceAndColour();
    void markWidthAndEnds();
    void markGrows();
    void markGrowsInSteps();
    void scalesToItsSize();
};

void TestSealCheck::discPopsIn()
{
    ManualClock clock;
    SealCheck seal;
    seal.play();
    QCOMPARE(departure(clock, kDisc, [&] { return seal.circleProgress(); }), QString());
}

void TestSealCheck::playsAgainFromTheStart()
{
    ManualClock clock;
    TimerWatch timers;
    SealCheck seal;
    PaintWatch watch(seal);
    seal.play();
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), kOneShot, 10000);
    clock.pass(150); // in the middle
    QVERIFY(seal.circleProgress() > 0.5);
    QVERIFY(seal.checkProgress() > 0.5);
    timers.clear();
    (void)watch.settled();
    for (int i = 0; i < 2; ++i) {
        seal.play();
        QCOMPARE(seal.circleProgress(), 0.0);
        QCOMPARE(seal.checkProgress(), 0.0);
    }
    QVERIFY(watch.seesRepaint());
    clock.pass(50);
    QCOMPARE(seal.checkProgress(), 0.0); // the old animation has not gone on
    QTRY_COMPARE_WITH_TIMEOUT(timers.shots(), kOneShot, 10000); // one for two plays
    QCOMPARE(departure(clock, kMark, [&] { return seal.checkProgress(); }), QString());
    QCOMPARE(seal.circleProgress(), 1.0);
    QCOMPARE(timers.shots(), kOneShot);
}

void TestSealCheck::nothingAtFirst()
{
    for (double circle : { 0.0, 0.001, -0.1 })
        QCOMPARE(pixelsUnlike(picture(circle, 1.0), Qt::transparent), 0);
    QVERIFY(pixelsUnlike(picture(0.0011, 1.0), Qt::transparent) > 0);
    QCOMPARE(picture(1.0, 0.001), picture(1.0, 0.0));
    // The round end of the stroke is there from the start.
    QCOMPARE(differenceAt(picture(1.0, 0.0011), { kStart }, markColour()), QString());
}

void TestSealCheck::disc()
{
    for (double progress : { 0.25, 0.5, 1.0, 1.05 }) {
        ThemeManager::instance().setDarkMode(progress == 0.5);
        const double radius = 22.0 * progress;
        const double opacity = qMin(progress, 1.0);
        for (double ratio : { 1.0, kMagnified }) {
            const QImage image = picture(progress, 0.0, kDesign, ratio);
            QVERIFY(std::abs(paintedArea(image) - M_PI * radius * radius * opacity)
                    < 2.0 + 8.0 / ratio);
            const double inside = radius - 1.0 / ratio - 0.2;
            QCOMPARE(
                differenceAt(image,
                             { kCentre, kCentre + QPointF(inside, 0), kCentre + QPointF(0, inside),
                               kCentre + QPointF(-inside, inside) * M_SQRT1_2 },
                             faded(discColour(), opacity)),
                QString());
        }
    }
}

// However far the disc has come, and however faint it is.
void TestSealCheck::markKeepsItsPlaceAndColour()
{
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        const QRectF ink = inkRect(picture(1.0, 1.0), markColour());
        for (double circle : { 0.6, 1.0, 1.08 }) {
            const QImage image = picture(circle, 1.0);
            QCOMPARE(inkRect(image, markColour()), ink);
            QCOMPARE(differenceAt(image, { pointOfMark(0.15), pointOfMark(0.6) }, markColour()),
                     QString());
        }
    }
}

void TestSealCheck::markWidthAndEnds()
{
    const QImage image = picture(1.0, 1.0);
    const QPointF middle = (kCorner + kEnd) / 2;
    QCOMPARE(differenceAt(image,
                          { middle - kAcross * 1.5, middle + kAcross * 1.5, kEnd + kAlong * 1.5,
                            kStart - QPointF(1.05, 1.05) },
                          markColour()),
             QString());
    // A square end would have corners.
    QCOMPARE(differenceAt(image,
                          { middle - kAcross * 1.7, middle + kAcross * 1.7, kEnd + kAlong * 1.7,
                            kEnd + (kAlong + kAcross) * 1.35, kEnd + (kAlong - kAcross) * 1.35,
                            kStart - QPointF(1.2, 1.2) },
                          discColour()),
             QString());
}

// Before the corner, beyond it and nearly all.
void TestSealCheck::markGrows()
{
    for (double progress : { 0.2, 0.4, 0.95 }) {
        const QImage image = picture(1.0, progress);
        const QPointF tip = pointOfMark(progress);
        const QPointF along = progress < 0.3 ? QPointF(M_SQRT1_2, M_SQRT1_2) : kAlong;
        for (double fraction = 0.0; fraction <= progress; fraction += 0.05)
            QCOMPARE(differenceAt(image, { pointOfMark(fraction) }, markColour()), QString());
        QCOMPARE(differenceAt(image, { tip + along * 1.5 }, markColour()), QString());
        QCOMPARE(differenceAt(image, { tip + along * 1.7 }, discColour()), QString());
    }
}

// The corner lies between two of the 24 steps, so that the stroke cuts it: its lowest point would
// be at 32.6 otherwise.
void TestSealCheck::markGrowsInSteps()
{
    const double lowest = qMax(pointOfMark(7.0 / 24.0).y(), pointOfMark(8.0 / 24.0).y()) + 1.6;
    QVERIFY(std::abs(inkRect(picture(1.0, 1.0), markColour()).bottom() - lowest) < 0.08);
    // At three quarters one of the steps nearly meets it.
    const double nearly = pointOfMark(10.0 / 24.0 * 0.75).y() + 1.6;
    QVERIFY(std::abs(inkRect(picture(1.0, 0.75), markColour()).bottom() - nearly) < 0.08);
}

void TestSealCheck::scalesToItsSize()
{
    for (const QSize &size : { QSize(46, 46), QSize(96, 48), QSize(48, 96) }) {
        const double sx = size.width() / 48.0;
        const double sy = size.height() / 48.0;
        const double s = qMin(sx, sy);
        const QRectF round = inkRect(picture(1.0, 0.0, size, 8.0));
        QVERIFY(std::abs(round.width() - 44.0 * s) < 0.3);
        QVERIFY(std::abs(round.height() - 44.0 * s) < 0.3);
        QVERIFY(length(round.center() - QPointF(24 * sx, 24 * sy)) < 0.2);

        const QImage image = picture(1.0, 1.0, size, 8.0);
        for (const QPointF &point : { kStart, (kStart + kCorner) / 2, (kCorner + kEnd) / 2, kEnd })
            QCOMPARE(differenceAt(image, { { point.x() * sx, point.y() * sy } }, markColour()),
                     QString());
        // The stroke is as wide as the smaller scale has it.
        const QRectF ink = inkRect(image, markColour());
        QVERIFY(std::abs(ink.left() - (15 * sx - 1.6 * s)) < 0.2);
        QVERIFY(std::abs(ink.right() - (34 * sx + 1.6 * s)) < 0.2);
        QVERIFY(std::abs(ink.top() - (17 * sy - 1.6 * s)) < 0.2);
    }
}

QTEST_MAIN(TestSealCheck)
#include "tst_sealcheck.moc"
