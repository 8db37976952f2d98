// Follows single pieces through pictures of the flight. They are told apart by their colours, of
// which there are so many that hardly two pieces get the same.

#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "widgets/confettioverlay.h"
#include "widgets/confettiticker.h"

#include <QHash>
#include <QMap>
#include <QSet>
#include <QTest>

#include <cmath>
#include <numbers>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize kSize(1300, 1000);
constexpr QPointF kOrigin(650, 520);
constexpr double kRatio = 2.0;
constexpr int kBursts = 3;
constexpr int kLevels = 64; // of each colour channel

/// So many pieces, of some three hundred, may seem to go astray: two have got one colour after all.
constexpr int kConfusions = 3;

constexpr double kAirDrag = 0.995;
constexpr double kGravity = 0.2;

/// A piece as it is seen in a picture.
struct Sight
{
    QPointF centre;
    double area = 0.0; // square pixels
    double longSide = 0.0; // px
    double shortSide = 0.0; // px
    double angle = 0.0; // of the long side, radians, from -pi/2 to pi/2
};

using Sights = QHash<int, Sight>; // by colour

/// One burst: what was seen after so many ticks.
using Flight = QMap<int, Sights>;

const std::vector<int> kSeenAfter { 20, 30, 40, 41, 42 };

QList<QColor> colours()
{
    QList<QColor> all;
    const auto channel = [](int level) { return level * 255 / (kLevels - 1); };
    for (int i = 0; i < kLevels * kLevels * kLevels; ++i) {
        all << QColor(channel(i / kLevels / kLevels), channel(i / kLevels % kLevels),
                      channel(i % kLevels));
    }
    return all;
}

int indexOf(QRgb colour)
{
    const auto level = [](int channel) { return (channel * (kLevels - 1) + 127) / 255; };
    return (level(qRed(colour)) * kLevels + level(qGreen(colour))) * kLevels + level(qBlue(colour));
}

/// What belongs together in a picture, pixel by pixel.
struct Blot
{
    double weight = 0.0;
    double x = 0.0;
    double y = 0.0;
    double xx = 0.0;
    double yy = 0.0;
    double xy = 0.0;
    int colour = -1;
    bool isOnePiece = true;

    void add(int column, int row, double coverage)
    {
        const double px = column + 0.5;
        const double py = row + 0.5;
        weight += coverage;
        x += coverage * px;
        y += coverage * py;
        xx += coverage * px * px;
        yy += coverage * py * py;
        xy += coverage * px * py;
    }

    [[nodiscard]] Sight sight() const
    {
        const double mx = x / weight;
        const double my = y / weight;
        // Of a rectangle's spread, side² / 12 each way; one pixel's own spread comes on top.
        const double sx = xx / weight - mx * mx - 1.0 / 12.0;
        const double sy = yy / weight - my * my - 1.0 / 12.0;
        const double sxy = xy / weight - mx * my;
        const double middle = (sx + sy) / 2;
        const double half = std::hypot((sx - sy) / 2, sxy);
        return { QPointF(mx, my) / kRatio, weight / kRatio / kRatio,
                 std::sqrt(12.0 * (middle + half)) / kRatio,
                 std::sqrt(12.0 * qMax(middle - half, 0.0)) / kRatio,
                 std::atan2(2.0 * sxy, sx - sy) / 2 };
    }
};

/// The pieces of `picture` that touch no other, when each piece has `opacity`.
Sights sightsIn(const QImage &picture, double opacity)
{
    const int expected = qRound(255 * opacity);
    const int width = picture.width();
    std::vector<bool> seen(size_t(width) * size_t(picture.height()));
    Sights sights;
    QSet<int> twice;
    std::vector<QPoint> open;
    for (int top = 0; top < picture.height(); ++top) {
        const auto *line = reinterpret_cast<const QRgb *>(picture.constScanLine(top));
        for (int left = 0; left < width; ++left) {
            if (qAlpha(line[left]) == 0 || seen[size_t(top) * size_t(width) + size_t(left)])
                continue;
            Blot blot;
            open.assign(1, QPoint(left, top));
            seen[size_t(top) * size_t(width) + size_t(left)] = true;
            while (!open.empty()) {
                const QPoint here = open.back();
                open.pop_back();
                const QRgb pixel =
                    reinterpret_cast<const QRgb *>(picture.constScanLine(here.y()))[here.x()];
                blot.add(here.x(), here.y(), qAlpha(pixel) / 255.0 / opacity);
                if (qAlpha(pixel) > expected + 2) {
                    blot.isOnePiece = false;
                } else if (qAlpha(pixel) >= expected - 2) {
                    const int colour = indexOf(qUnpremultiply(pixel));
                    blot.isOnePiece =
                        blot.isOnePiece && (blot.colour == -1 || blot.colour == colour);
                    blot.colour = colour;
                }
                for (const QPoint &step :
                     { QPoint(1, 0), QPoint(-1, 0), QPoint(0, 1), QPoint(0, -1) }) {
                    const QPoint next = here + step;
                    if (!picture.valid(next) || qAlpha(picture.pixel(next)) == 0)
                        continue;
                    const size_t place = size_t(next.y()) * size_t(width) + size_t(next.x());
                    if (!seen[place]) {
                        seen[place] = true;
                        open.push_back(next);
                    }
                }
            }
            if (!blot.isOnePiece || blot.colour == -1)
                continue;
            if (sights.contains(blot.colour))
                twice << blot.colour;
            sights.insert(blot.colour, blot.sight());
        }
    }
    for (int colour : std::as_const(twice))
        sights.remove(colour);
    return sights;
}

Flight watchBurst()
{
    QWidget parent;
    parent.resize(kSize);
    auto *overlay = new ConfettiOverlay(&parent);
    ConfettiTicker ticker(*overlay);
    overlay->burst(kOrigin, colours());
    Flight flight;
    int age = 0;
    for (int next : kSeenAfter) {
        ticker.tick(next - age);
        age = next;
        flight[age] = sightsIn(grabWidget(*overlay, kRatio), 1.0 - age / 130.0);
    }
    // Only those that were alone all the time. What changes its size is two pieces of one colour.
    const Flight all = flight;
    for (const Sights &sights : all) {
        for (Sights &others : flight) {
            others.removeIf([&](Sights::iterator it) {
                return std::abs(sights.value(it.key()).area - it->area) > 0.06 * it->area;
            });
        }
    }
    return flight;
}

double sumOfDrag(int ticks)
{
    double sum = 0.0;
    for (int i = 1; i <= ticks; ++i)
        sum += std::pow(kAirDrag, i);
    return sum;
}

double fall(int ticks)
{
    return kGravity * ticks * (ticks + 1) / 2.0;
}

/// The turn from `a` to `b`, of which a rectangle looks the same after half a turn.
double turn(double a, double b)
{
    return std::remainder(b - a, std::numbers::pi);
}

} // namespace

class TestConfettiOverlayFlight : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { failOnWarnings(); }
    void gravityAndAirDrag();
    void speeds();
    void directions();
    void sizes();
    void rotations();
    void spins();

private:
    std::vector<Flight> m_flights;
};

void TestConfettiOverlayFlight::initTestCase()
{
    for (int i = 0; i < kBursts; ++i) {
        m_flights.push_back(watchBurst());
        // Most of the 110 fly alone.
        QVERIFY(m_flights.back().first().size() >= 60);
        QVERIFY(m_flights.back().first().size() <= 110);
    }
}

void TestConfettiOverlayFlight::gravityAndAirDrag()
{
    int strays = 0;
    for (const Flight &flight : m_flights) {
        for (auto [colour, at20] : flight[20].asKeyValueRange()) {
            const QPointF first = flight[30][colour].centre - at20.centre;
            const QPointF second = flight[40][colour].centre - flight[30][colour].centre;
            // In ten ticks the fall grows by ten times ten times gravity. What stands all but
            // upright is painted up to half a pixel too short.
            const double growth = second.y() - first.y();
            const double drag = second.x() - first.x() * std::pow(kAirDrag, 10);
            const bool obeys = std::abs(growth - 100 * kGravity) < 0.7 && std::abs(drag) < 0.7;
            strays += obeys ? 0 : 1;
        }
    }
    QVERIFY2(strays <= kConfusions, qPrintable(QString::number(strays)));
}

void TestConfettiOverlayFlight::speeds()
{
    int count = 0;
    int slow = 0;
    double slowest = 100.0;
    double fastest = 0.0;
    for (const Flight &flight : m_flights) {
        for (const Sight &sight : flight[20]) {
            const QPointF way = sight.centre - kOrigin;
            const double vx = way.x() / sumOfDrag(20);
            const double vy = (way.y() - fall(20)) / 20;
            const double speed = std::hypot(vx / 1.3, vy + 4.2);
            slowest = qMin(slowest, speed);
            fastest = qMax(fastest, speed);
            ++count;
            slow += speed < 6.5 ? 1 : 0;
        }
    }
    QVERIFY2(slowest > 2.48 && slowest < 3.2, qPrintable(QString::number(slowest)));
    QVERIFY2(fastest < 10.52 && fastest > 9.8, qPrintable(QString::number(fastest)));
    QVERIFY(slow > 0.35 * count && slow < 0.65 * count);
}

void TestConfettiOverlayFlight::directions()
{
    int octants[8] {};
    int count = 0;
    for (const Flight &flight : m_flights) {
        for (const Sight &sight : flight[20]) {
            const QPointF way = sight.centre - kOrigin;
            const double vx = way.x() / sumOfDrag(20);
            const double vy = (way.y() - fall(20)) / 20;
            const double angle = std::atan2(vy + 4.2, vx / 1.3) + std::numbers::pi;
            ++octants[qMin(int(angle / (std::numbers::pi / 4)), 7)];
            ++count;
        }
    }
    for (int octant : octants)
        QVERIFY2(octant > count / 24 && octant < count / 4, qPrintable(QString::number(octant)));
}

// Width 4 to 9, height 3 to 7, whichever of the two is the longer side.
void TestConfettiOverlayFlight::sizes()
{
    double longest = 0.0;
    double shortestLong = 100.0;
    double longestShort = 0.0;
    double shortest = 100.0;
    for (const Flight &flight : m_flights) {
        for (const Sight &sight : flight[30]) {
            longest = qMax(longest, sight.longSide);
            shortestLong = qMin(shortestLong, sight.longSide);
            longestShort = qMax(longestShort, sight.shortSide);
            shortest = qMin(shortest, sight.shortSide);
            QVERIFY(std::abs(sight.area - sight.longSide * sight.shortSide) < 0.06 * sight.area);
        }
    }
    QVERIFY2(longest > 8.6 && longest < 9.15, qPrintable(QString::number(longest)));
    QVERIFY2(shortestLong > 3.85, qPrintable(QString::number(shortestLong)));
    QVERIFY2(longestShort > 6.0 && longestShort < 7.15, qPrintable(QString::number(longestShort)));
    QVERIFY2(shortest > 2.85 && shortest < 3.3, qPrintable(QString::number(shortest)));
}

void TestConfettiOverlayFlight::rotations()
{
    int quarters[4] {};
    for (const Flight &flight : m_flights) {
        for (const Sight &sight : flight[20]) {
            const double share = sight.angle / std::numbers::pi + 0.5;
            if (sight.longSide > 1.3 * sight.shortSide)
                ++quarters[qBound(0, int(4 * share), 3)];
        }
    }
    for (int quarter : quarters)
        QVERIFY2(quarter > 15, qPrintable(QString::number(quarter)));
}

void TestConfettiOverlayFlight::spins()
{
    int strays = 0;
    double least = 0.0;
    double most = 0.0;
    for (const Flight &flight : m_flights) {
        for (auto [colour, at40] : flight[40].asKeyValueRange()) {
            if (at40.longSide < 1.3 * at40.shortSide)
                continue; // of a square nobody sees the rotation
            const double spin = turn(at40.angle, flight[41][colour].angle);
            const double next = turn(flight[41][colour].angle, flight[42][colour].angle);
            if (std::abs(spin - next) > 0.04) {
                ++strays;
                continue;
            }
            least = qMin(least, (spin + next) / 2);
            most = qMax(most, (spin + next) / 2);
        }
    }
    QVERIFY2(strays <= kConfusions, qPrintable(QString::number(strays)));
    QVERIFY2(least < -0.14 && least > -0.185, qPrintable(QString::number(least)));
    QVERIFY2(most > 0.14 && most < 0.185, qPrintable(QString::number(most)));
}

QTEST_MAIN(TestConfettiOverlayFlight)
#include "tst_confettioverlay_flight.moc"
