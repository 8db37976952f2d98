// The overlay and the flight of its pieces, judged by what it paints. Each piece starts at random:
// of the 11,000 made here, some come within half a percent of each end of each range, except in one
// run of 10^20, so that a range that is a few percent too wide or too narrow is found.

#include "pages/lightthemetest.h"
#include "pages/timerwatch.h"
#include "widgets/confettioverlay.h"
#include "widgets/confettipieces.h"
#include "widgets/paintwatch.h"
#include "widgets/reducedmotion.h"

#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int kPieces = 110;
constexpr int kLifetime = 130; // ticks
constexpr int kBursts = 100;
constexpr QPointF kOrigin(300, 3000);
constexpr double kPi = std::numbers::pi;

/// Some of the pieces are this near to an end of a range, as a share of it. That none of 11,000 is
/// has a probability of 0.995^11000, which is 10^-24.
constexpr double kEnd = 0.005;

/// Many times the rounding error of such sums.
constexpr double kRounding = 1e-9;

constexpr double kAirDrag = 0.995;
constexpr double kGravity = 0.2;

const QList<QColor> kColours { Qt::red, Qt::green, Qt::blue };

/// So high that nothing falls out of it.
class Window : public QWidget
{
public:
    Window() { resize(600, 6000); }
};

/// A burst over a window. Time goes by only when told to.
struct Scene
{
    Scene()
    {
        timer->setInterval(1h);
        overlay->burst(kOrigin, kColours);
    }

    void tick(int times = 1) { TimerWatch::fire(timer, times); }
    [[nodiscard]] QList<PaintedPiece> pieces() const { return paintedPieces(*overlay); }

    Window window;
    ConfettiOverlay *overlay = new ConfettiOverlay(&window);
    QTimer *timer = overlay->findChild<QTimer *>();
};

/// A piece at its start, as its first tick tells.
struct Start
{
    QSizeF size;
    double rotation; ///< 0 to 2 pi
    double spin; ///< radians per tick
    QPointF thrown; ///< px per tick, before that was widened and raised
    QColor colour;
};

using Number = std::function<double(const Start &)>;

/// The turn from `a` to `b`, which is no more than half a round.
double turn(double a, double b)
{
    return std::remainder(b - a, 2.0 * kPi);
}

} // namespace

class TestConfettiOverlay : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void restsUntilABurst();
    void burstReplacesTheOneBefore();
    void livesFor130Ticks();
    void liesOverItsWindow();
    void startsAreRandom_data();
    void startsAreRandom();
    void coloursAreRandom();
    void flight();
    void fallsOutFortyBelow();
    void isNotPaintedFartherBelow();

private:
    std::vector<Start> m_starts;
};

void TestConfettiOverlay::initTestCase()
{
    for (int i = 0; i < kBursts; ++i) {
        Scene scene;
        const QList<PaintedPiece> before = scene.pieces();
        scene.tick();
        const QList<PaintedPiece> after = scene.pieces();
        QCOMPARE(before.size(), kPieces);
        QCOMPARE(after.size(), kPieces);
        for (qsizetype piece = 0; piece < kPieces; ++piece) {
            const PaintedPiece &first = before[piece];
            const QPointF step = after[piece].centre - first.centre;
            QCOMPARE(first.centre, kOrigin);
            QCOMPARE(first.opacity, 1.0);
            QCOMPARE(after[piece].size, first.size);
            QCOMPARE(after[piece].colour, first.colour);
            m_starts.push_back(
                { first.size, first.rotation < 0 ? first.rotation + 2 * kPi : first.rotation,
                  turn(first.rotation, after[piece].rotation),
                  QPointF(step.x() / kAirDrag / 1.3, step.y() - kGravity + 4.2), first.colour });
        }
    }
}

void TestConfettiOverlay::restsUntilABurst()
{
    QWidget window;
    ConfettiOverlay overlay(&window);
    const QWidget page(&window);
    const auto *timer = overlay.findChild<QTimer *>();
    window.show();
    const auto rests = [&] {
        return !overlay.isVisible() && !timer->isActive() && paintedPieces(overlay).isEmpty()
            && window.children().last() == &page;
    };
    QVERIFY(rests());
    overlay.burst(kOrigin, {});
    QVERIFY(rests());
    {
        const ReducedMotion reduced;
        overlay.burst(kOrigin, kColours);
        QVERIFY(rests());
    }
    overlay.burst(kOrigin, kColours);
    QVERIFY(overlay.isVisible());
    QCOMPARE(window.children().last(), &overlay);
    QVERIFY(timer->isActive());
    QVERIFY(!timer->isSingleShot());
    QCOMPARE(timer->interval(), 16);
}

void TestConfettiOverlay::burstReplacesTheOneBefore()
{
    Scene scene;
    scene.tick(60);
    scene.overlay->burst({ 100, 2000 }, { Qt::yellow });
    scene.overlay->burst({ 100, 100 }, {}); // without colours, which changes nothing
    const QList<PaintedPiece> pieces = scene.pieces();
    QCOMPARE(pieces.size(), kPieces);
    for (const PaintedPiece &piece : pieces) {
        QCOMPARE(piece.colour, Qt::yellow);
        QCOMPARE(piece.centre, QPointF(100, 2000));
    }
}

void TestConfettiOverlay::livesFor130Ticks()
{
    Scene scene;
    for (int round = 0; round < 2; ++round) {
        scene.tick(kLifetime - 1);
        QVERIFY(!scene.overlay->isHidden());
        QVERIFY(scene.timer->isActive());
        QCOMPARE(scene.pieces().size(), kPieces);
        scene.tick();
        QVERIFY(scene.overlay->isHidden());
        QVERIFY(!scene.timer->isActive());
        QVERIFY(scene.pieces().isEmpty());
        scene.overlay->burst(kOrigin, kColours); // and once more
    }
}

void TestConfettiOverlay::liesOverItsWindow()
{
    Scene scene;
    QPushButton button(u"Page"_s, &scene.window);
    button.setGeometry(250, 2950, 100, 100);
    scene.window.show();
    scene.overlay->burst(kOrigin, kColours);
    PaintWatch watch(*scene.overlay);
    for (int i = 0; i < 3; ++i) {
        scene.tick();
        QVERIFY(watch.seesRepaint());
    }
    QVERIFY(scene.overlay->isVisible());
    QCOMPARE(scene.window.childAt(kOrigin.toPoint()), &button); // clicks pass through
    for (const QSize &size : { QSize(300, 200), QSize(500, 5000) }) {
        scene.window.resize(size);
        QCOMPARE(scene.overlay->geometry(), QRect({}, size));
    }
}

void TestConfettiOverlay::startsAreRandom_data()
{
    QTest::addColumn<double>("low");
    QTest::addColumn<double>("high");
    QTest::addColumn<Number>("number");
    const auto add = [](const char *name, double low, double high, const Number &number) {
        QTest::newRow(name) << low << high << number;
    };
    add("speed", 2.5, 10.5,
        [](const Start &start) { return std::hypot(start.thrown.x(), start.thrown.y()); });
    add("direction", -kPi, kPi,
        [](const Start &start) { return std::atan2(start.thrown.y(), start.thrown.x()); });
    add("width", 4.0, 9.0, [](const Start &start) { return start.size.width(); });
    add("height", 3.0, 7.0, [](const Start &start) { return start.size.height(); });
    add("rotation", 0.0, 6.28, [](const Start &start) { return start.rotation; });
    add("spin", -0.17, 0.17, [](const Start &start) { return start.spin; });
}

// Together they take up all of the range and nothing beyond it, and half of them lie in either half
// of it.
void TestConfettiOverlay::startsAreRandom()
{
    QFETCH(const double, low);
    QFETCH(const double, high);
    QFETCH(const Number, number);
    std::vector<double> numbers;
    std::transform(m_starts.begin(), m_starts.end(), std::back_inserter(numbers), number);
    const auto [least, most] = std::minmax_element(numbers.begin(), numbers.end());
    const double end = kEnd * (high - low);
    QVERIFY2(*least > low - kRounding && *least < low + end, qPrintable(QString::number(*least)));
    QVERIFY2(*most<high + kRounding && * most> high - end, qPrintable(QString::number(*most)));
    const auto lower = std::count_if(numbers.begin(), numbers.end(),
                                     [&](double each) { return each < (low + high) / 2; });
    // The share of one half has a deviation of 0.0048: this is ten of them.
    QVERIFY(std::abs(double(lower) / double(numbers.size()) - 0.5) < 0.048);
}

void TestConfettiOverlay::coloursAreRandom()
{
    for (const QColor &colour : kColours) {
        const auto count = std::count_if(m_starts.begin(), m_starts.end(), [&](const Start &start) {
            return start.colour == colour;
        });
        // A third each, with a deviation of 49: this is ten of them.
        QVERIFY(std::abs(count - kBursts * kPieces / 3) < 490);
    }
}

void TestConfettiOverlay::flight()
{
    Scene scene;
    QList<PaintedPiece> before = scene.pieces();
    scene.tick();
    QList<PaintedPiece> now = scene.pieces();
    for (int age = 2; age < kLifetime; ++age) {
        scene.tick();
        const QList<PaintedPiece> next = scene.pieces();
        QCOMPARE(next.size(), kPieces);
        for (qsizetype i = 0; i < kPieces; ++i) {
            const QPointF step = now[i].centre - before[i].centre;
            const QPointF nextStep = next[i].centre - now[i].centre;
            QVERIFY(std::abs(nextStep.x() - kAirDrag * step.x()) < kRounding);
            QVERIFY(std::abs(nextStep.y() - kGravity - step.y()) < kRounding);
            const double spin = turn(before[i].rotation, now[i].rotation);
            QVERIFY(std::abs(turn(now[i].rotation, next[i].rotation) - spin) < kRounding);
            QVERIFY(std::abs(next[i].opacity - (1.0 - double(age) / kLifetime)) < kRounding);
        }
        before = now;
        now = next;
    }
}

// The overlay is made so high that the last piece is just above or just below the line.
void TestConfettiOverlay::fallsOutFortyBelow()
{
    for (bool isAlive : { true, false }) {
        Scene scene;
        scene.tick(60);
        const QList<PaintedPiece> before = scene.pieces();
        scene.tick();
        const QList<PaintedPiece> now = scene.pieces();
        double highest = 1e6; // at the next tick
        for (qsizetype i = 0; i < kPieces; ++i) {
            const double step = now[i].centre.y() - before[i].centre.y();
            highest = qMin(highest, now[i].centre.y() + step + kGravity);
        }
        const int line = int(isAlive ? std::ceil(highest) : std::floor(highest));
        scene.overlay->resize(600, line - 40);
        scene.tick();
        QCOMPARE(!scene.overlay->isHidden(), isAlive);
    }
}

void TestConfettiOverlay::isNotPaintedFartherBelow()
{
    Scene scene;
    scene.tick(60);
    const QList<PaintedPiece> all = scene.pieces();
    QCOMPARE(all.size(), kPieces);
    for (int height : { 2500, 2800, 3000, 3200, 3500 }) {
        scene.overlay->resize(600, height);
        const auto above = std::count_if(all.begin(), all.end(), [&](const PaintedPiece &piece) {
            return piece.centre.y() <= height + 40;
        });
        QCOMPARE(scene.pieces().size(), above);
    }
}

QTEST_MAIN(TestConfettiOverlay)
#include "tst_confettioverlay.moc"
