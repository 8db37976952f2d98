// Follows each piece through the flight, by what the overlay paints. The pieces are made of random
// numbers, of which the ranges are to be right. Of so many pieces as there are here, some come
// within half a percent of each end of each range, but for one run in 10^20; a range that is a few
// percent too wide or too narrow shows.

#include "pages/strictwarnings.h"
#include "widgets/confettioverlay.h"
#include "widgets/confettipieces.h"
#include "widgets/confettiticker.h"

#include <QTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kPieces = 110;
constexpr int kBursts = 100;
constexpr QPointF kOrigin(300, 3000);
constexpr double kPi = std::numbers::pi;

/// The share of a range within which of each of its ends some of the pieces are: that none of
/// 11,000 is has a probability of 0.995^11000, which is 10^-24.
constexpr double kEnd = 0.005;

/// Many times what sums of doubles lose.
constexpr double kRounding = 1e-9;

constexpr double kAirDrag = 0.995;
constexpr double kGravity = 0.2;

const QList<QColor> kColours { Qt::red, Qt::green, Qt::blue };

/// A piece at its start, as its first tick tells.
struct Start
{
    QSizeF size;
    double rotation; ///< 0 to 2 pi
    double spin; ///< radians per tick
    QPointF velocity; ///< px per tick
    QColor colour;
};

/// The turn from `a` to `b`, which is no more than half a round.
double turn(double a, double b)
{
    return std::remainder(b - a, 2.0 * kPi);
}

/// A parent of which nothing falls out, and what lies over it.
struct Scene
{
    Scene()
    {
        parent.resize(600, 6000);
        overlay = new ConfettiOverlay(&parent);
        ticker = std::make_unique<ConfettiTicker>(*overlay);
        overlay->burst(kOrigin, kColours);
    }

    QWidget parent;
    ConfettiOverlay *overlay;
    std::unique_ptr<ConfettiTicker> ticker;
};

/// Speed in the direction in which the piece was thrown, before that was widened and raised.
QPointF thrown(const Start &start)
{
    return { start.velocity.x() / 1.3, start.velocity.y() + 4.2 };
}

double speedOf(const Start &start)
{
    return std::hypot(thrown(start).x(), thrown(start).y());
}

/// Empty if the numbers that `of` makes of all pieces take up all of the range from `low` to `high`
/// and nothing beyond it, and if half of them lie in either half of it.
template <typename Of>
QString outOfRange(const std::vector<Start> &starts, double low, double high, Of of)
{
    std::vector<double> numbers;
    std::transform(starts.begin(), starts.end(), std::back_inserter(numbers), of);
    const auto [least, most] = std::minmax_element(numbers.begin(), numbers.end());
    const double end = kEnd * (high - low);
    const auto lower = std::count_if(numbers.begin(), numbers.end(),
                                     [&](double number) { return number < (low + high) / 2; });
    const double share = double(lower) / double(numbers.size());
    // The share of one half has a deviation of 0.0048: this is ten of them.
    const bool isRight = *least >= low - kRounding
        && *least<low + end && * most <= high + kRounding && * most> high - end
        && std::abs(share - 0.5) < 0.048;
    return isRight ? QString()
                   : u"from %1 to %2, %3 below the middle"_s.arg(*least).arg(*most).arg(share);
}

} // namespace

class TestConfettiOverlayFlight : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { failOnWarnings(); }
    void speeds();
    void directions();
    void sidewaysIsWidened();
    void sizes();
    void rotations();
    void spins();
    void colours();
    void gravityAirDragAndSpin();
    void fallsOutFortyBelow();
    void isNotPaintedFartherBelow();

private:
    std::vector<Start> m_starts;
};

void TestConfettiOverlayFlight::initTestCase()
{
    for (int i = 0; i < kBursts; ++i) {
        Scene scene;
        const QList<PaintedPiece> before = paintedPieces(*scene.overlay);
        scene.ticker->tick();
        const QList<PaintedPiece> after = paintedPieces(*scene.overlay);
        QCOMPARE(before.size(), kPieces);
        QCOMPARE(after.size(), kPieces);
        for (qsizetype piece = 0; piece < kPieces; ++piece) {
            const PaintedPiece &first = before[piece];
            const QPointF step = after[piece].centre - first.centre;
            QCOMPARE(first.centre, kOrigin);
            QCOMPARE(first.opacity, 1.0);
            QCOMPARE(after[piece].size, first.size);
            QCOMPARE(after[piece].colour, first.colour);
            m_starts.push_back({ first.size,
                                 first.rotation < 0 ? first.rotation + 2 * kPi : first.rotation,
                                 turn(first.rotation, after[piece].rotation),
                                 QPointF(step.x() / kAirDrag, step.y() - kGravity), first.colour });
        }
    }
}

void TestConfettiOverlayFlight::speeds()
{
    QCOMPARE(outOfRange(m_starts, 2.5, 10.5, speedOf), QString());
}

void TestConfettiOverlayFlight::directions()
{
    const auto directionOf = [](const Start &start) {
        return std::atan2(thrown(start).y(), thrown(start).x());
    };
    QCOMPARE(outOfRange(m_starts, -kPi, kPi, directionOf), QString());
    std::array<int, 8> octants {};
    for (const Start &start : m_starts)
        ++octants[size_t(std::clamp(int((directionOf(start) + kPi) / (kPi / 4)), 0, 7))];
    // An eighth each, with a deviation of 35: this is ten of them.
    for (int octant : octants)
        QVERIFY2(std::abs(octant - kBursts * kPieces / 8) < 350,
                 qPrintable(QString::number(octant)));
}

// The fastest are as fast whether they go sideways or up and down. Of all pieces, one in four flies
// in each of these sectors, and one in 27 of these with the last 0.3 px per tick of its speed; that
// none does has a probability of (1 - 0.25 * 0.3 / 8)^11000, which is 10^-45.
void TestConfettiOverlayFlight::sidewaysIsWidened()
{
    double sideways = 0.0;
    double upright = 0.0;
    for (const Start &start : m_starts) {
        const QPointF way = thrown(start) / speedOf(start);
        if (std::abs(way.x()) > 0.924) // within 22.5 degrees
            sideways = qMax(sideways, speedOf(start));
        if (std::abs(way.y()) > 0.924)
            upright = qMax(upright, speedOf(start));
    }
    QVERIFY2(sideways > 10.2, qPrintable(QString::number(sideways)));
    QVERIFY2(upright > 10.2, qPrintable(QString::number(upright)));
}

void TestConfettiOverlayFlight::sizes()
{
    const auto widthOf = [](const Start &start) { return start.size.width(); };
    const auto heightOf = [](const Start &start) { return start.size.height(); };
    QCOMPARE(outOfRange(m_starts, 4.0, 9.0, widthOf), QString());
    QCOMPARE(outOfRange(m_starts, 3.0, 7.0, heightOf), QString());
}

void TestConfettiOverlayFlight::rotations()
{
    const auto rotationOf = [](const Start &start) { return start.rotation; };
    QCOMPARE(outOfRange(m_starts, 0.0, 6.28, rotationOf), QString());
}

void TestConfettiOverlayFlight::spins()
{
    const auto spinOf = [](const Start &start) { return start.spin; };
    QCOMPARE(outOfRange(m_starts, -0.17, 0.17, spinOf), QString());
}

void TestConfettiOverlayFlight::colours()
{
    for (const QColor &colour : kColours) {
        const auto count = std::count_if(m_starts.begin(), m_starts.end(), [&](const Start &start) {
            return start.colour == colour;
        });
        // A third each, with a deviation of 49: this is ten of them.
        QVERIFY(std::abs(count - kBursts * kPieces / 3) < 490);
    }
}

void TestConfettiOverlayFlight::gravityAirDragAndSpin()
{
    Scene scene;
    QList<PaintedPiece> before = paintedPieces(*scene.overlay);
    scene.ticker->tick();
    QList<PaintedPiece> now = paintedPieces(*scene.overlay);
    for (int age = 2; age < 130; ++age) {
        scene.ticker->tick();
        const QList<PaintedPiece> next = paintedPieces(*scene.overlay);
        QCOMPARE(next.size(), kPieces);
        for (qsizetype i = 0; i < kPieces; ++i) {
            const QPointF step = now[i].centre - before[i].centre;
            const QPointF nextStep = next[i].centre - now[i].centre;
            QVERIFY(std::abs(nextStep.x() - kAirDrag * step.x()) < kRounding);
            QVERIFY(std::abs(nextStep.y() - kGravity - step.y()) < kRounding);
            const double spin = turn(before[i].rotation, now[i].rotation);
            QVERIFY(std::abs(turn(now[i].rotation, next[i].rotation) - spin) < kRounding);
            QVERIFY(std::abs(next[i].opacity - (1.0 - age / 130.0)) < kRounding);
        }
        before = now;
        now = next;
    }
}

// The overlay is made so high that the last piece is just above or just below the line.
void TestConfettiOverlayFlight::fallsOutFortyBelow()
{
    for (bool isAlive : { true, false }) {
        Scene scene;
        scene.ticker->tick(60);
        const QList<PaintedPiece> before = paintedPieces(*scene.overlay);
        scene.ticker->tick();
        const QList<PaintedPiece> now = paintedPieces(*scene.overlay);
        double highest = 1e6; // at the next tick
        for (qsizetype i = 0; i < kPieces; ++i) {
            const double step = now[i].centre.y() - before[i].centre.y();
            highest = qMin(highest, now[i].centre.y() + step + kGravity);
        }
        const int line = int(isAlive ? std::ceil(highest) : std::floor(highest));
        scene.overlay->resize(600, line - 40);
        scene.ticker->tick();
        QCOMPARE(!scene.overlay->isHidden(), isAlive);
        QCOMPARE(scene.overlay->pieceCount(), isAlive ? kPieces : 0);
    }
}

void TestConfettiOverlayFlight::isNotPaintedFartherBelow()
{
    Scene scene;
    scene.ticker->tick(60);
    const QList<PaintedPiece> all = paintedPieces(*scene.overlay);
    QCOMPARE(all.size(), kPieces);
    for (int height : { 2500, 2800, 3000, 3200, 3500 }) {
        scene.overlay->resize(600, height);
        const auto above = std::count_if(all.begin(), all.end(), [&](const PaintedPiece &piece) {
            return piece.centre.y() <= height + 40;
        });
        QCOMPARE(paintedPieces(*scene.overlay).size(), above);
    }
}

QTEST_MAIN(TestConfettiOverlayFlight)
#include "tst_confettioverlay_flight.moc"
