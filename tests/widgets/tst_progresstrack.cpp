#include "pages/lightthemetest.h"
#include "pages/manualclock.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/course.h"
#include "widgets/look.h"
#include "widgets/paintwatch.h"
#include "widgets/progresstrack.h"

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kGlide = 300; // ms
constexpr int kSweep = 1100; // ms

QColor accent()
{
    return themedColor(u"@INS_ACCENT"_s);
}

/// Whether the sweep is at `phase`. That of the end is that of the beginning.
bool isAtPhase(const ProgressTrack &track, double phase)
{
    return std::abs(std::remainder(track.indeterminatePhase() - phase, 1.0)) < 0.01;
}

} // namespace

class TestProgressTrack : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void glides();
    void settlesAndResets();
    void sweeps();
    void sweepsOnlyWhereItIsSeen();
    void fill();
    void sweepingSegment();
    void fillIsBackAfterTheSweep();
    void roundEnds();
};

void TestProgressTrack::glides()
{
    struct Glide
    {
        double from;
        int percent;
        double to;
    };
    for (const auto &[from, percent, to] : { Glide { 0.0, 43, 0.43 }, Glide { 0.8, 1, 0.01 },
                                             Glide { 0.5, 150, 1.0 }, Glide { 0.5, -5, 0.0 } }) {
        ManualClock clock;
        ProgressTrack track;
        track.setValue(from);
        track.setTargetPercent(percent);
        QCOMPARE(track.target(), to);
        QCOMPARE(departure(clock, { from, to, kGlide, QEasingCurve::Linear },
                           [&track] { return track.value(); }),
                 QString());
    }
}

void TestProgressTrack::settlesAndResets()
{
    ManualClock clock;
    ProgressTrack track;
    for (double end : { 0.8, 0.0 }) {
        track.setTarget(0.8);
        clock.pass(kGlide / 2);
        if (end > 0.0)
            track.settle();
        else
            track.reset();
        QCOMPARE(track.value(), end);
        QCOMPARE(track.target(), end);
        clock.pass(kGlide);
        QCOMPARE(track.value(), end);
        track.setValue(-0.5);
        QCOMPARE(track.value(), 0.0);
    }
    track.setValue(3.0);
    QCOMPARE(track.value(), 1.0);
}

void TestProgressTrack::sweeps()
{
    ManualClock clock;
    ProgressTrack track;
    track.show();
    track.setIndeterminate(true);
    // Round after round, each from left to right in even steps.
    for (int tenth = 1; tenth <= 25; ++tenth) {
        clock.pass(kSweep / 10);
        QVERIFY2(isAtPhase(track, tenth / 10.0), qPrintable(QString::number(tenth)));
        track.setIndeterminate(true); // does not begin anew
    }
    track.setIndeterminate(false);
    clock.pass(kSweep / 4);
    QVERIFY(isAtPhase(track, 0.5));
    track.setIndeterminate(true);
    clock.pass(kSweep / 4);
    QVERIFY(isAtPhase(track, 0.25));
}

void TestProgressTrack::sweepsOnlyWhereItIsSeen()
{
    ManualClock clock;
    ProgressTrack track;
    track.setIndeterminate(true);
    QTRY_VERIFY_WITH_TIMEOUT(!clock.isRunning(), 10000);
    track.show();
    QTRY_VERIFY_WITH_TIMEOUT(clock.isRunning(), 10000);
    track.hide();
    QTRY_VERIFY_WITH_TIMEOUT(!clock.isRunning(), 10000);
    track.show();
    QTRY_VERIFY_WITH_TIMEOUT(clock.isRunning(), 10000);
    track.setIndeterminate(false);
    track.hide();
    track.show();
    QTRY_VERIFY_WITH_TIMEOUT(!clock.isRunning(), 10000);
}

void TestProgressTrack::fill()
{
    ProgressTrack track;
    track.resize(1000, 4);
    const QImage bare = grabWidget(track, 2.0);
    QVERIFY(inkRect(bare, accent()).isEmpty());
    track.setValue(0.003); // three pixels, at the very end of which the track is round
    QVERIFY(grabWidget(track, 2.0) != bare);
    for (double value : { 0.1, 0.5, 0.75, 1.0 }) {
        track.setValue(value);
        const QRectF ink = inkRect(grabWidget(track, 2.0), accent());
        QVERIFY(ink.left() <= 1.0);
        QVERIFY(std::abs(ink.right() - value * track.width()) <= 1.0);
        QCOMPARE(ink.height(), 4.0);
    }
}

void TestProgressTrack::sweepingSegment()
{
    constexpr double w = 240.0;
    constexpr double segment = 0.38 * w;
    ProgressTrack track;
    track.resize(int(w), 4);
    track.setValue(1.0); // not to be seen meanwhile
    track.setIndeterminate(true);
    for (double phase : { 0.1, 0.3, 0.5, 0.7 }) {
        track.setIndeterminatePhase(phase);
        const QRectF ink = inkRect(grabWidget(track, 2.0), accent());
        const double left = (w + 2 * segment) * phase - segment;
        QVERIFY(std::abs(ink.left() - qMax(left, 0.0)) <= 1.0);
        QVERIFY(std::abs(ink.right() - qMin(left + segment, w)) <= 1.0);
    }
    // It comes in from beyond the left end and goes out beyond the right one.
    for (double phase : { 0.0, 1.0 }) {
        track.setIndeterminatePhase(phase);
        QVERIFY(inkRect(grabWidget(track, 2.0), accent()).isEmpty());
    }
}

void TestProgressTrack::fillIsBackAfterTheSweep()
{
    ProgressTrack track;
    track.resize(240, 4);
    track.setValue(0.5);
    const QImage before = grabWidget(track);
    PaintWatch watch(track);
    track.setIndeterminate(true);
    QVERIFY(watch.seesRepaint());
    track.setIndeterminate(false);
    QVERIFY(watch.seesRepaint());
    QCOMPARE(grabWidget(track), before);
}

void TestProgressTrack::roundEnds()
{
    for (const QSize &size : { QSize(240, 4), QSize(100, 20) }) {
        ProgressTrack track;
        track.resize(size);
        // Two half discs and what is between them.
        const double h = size.height();
        const double area = M_PI * h * h / 4.0 + (size.width() - h) * h;
        const auto paintsAll = [&] {
            return std::abs(paintedArea(grabWidget(track, 4.0)) - area) < 0.03 * h * h;
        };
        QVERIFY(paintsAll());
        // Neither the fill nor the segment comes out of them.
        track.setValue(1.0);
        QVERIFY(paintsAll());
        track.setIndeterminate(true);
        track.setIndeterminatePhase(0.25);
        QVERIFY(paintsAll());
    }
}

QTEST_MAIN(TestProgressTrack)
#include "tst_progresstrack.moc"
