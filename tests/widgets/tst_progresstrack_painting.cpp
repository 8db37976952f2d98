#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/look.h"
#include "widgets/paintwatch.h"
#include "widgets/progresstrack.h"

#include <QTest>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The part of `picture`'s middle row that is of `colour`, in pixels: where it begins and ends.
struct Stretch
{
    double left = -1.0;
    double right = -1.0;
};

Stretch stretchOf(const QImage &picture, const QColor &colour)
{
    const double ratio = picture.devicePixelRatio();
    Stretch stretch;
    for (int x = 0; x < picture.width(); ++x) {
        if (!difference(picture.pixelColor(x, picture.height() / 2), colour).isEmpty())
            continue;
        if (stretch.left < 0.0)
            stretch.left = x / ratio;
        stretch.right = (x + 1) / ratio;
    }
    return stretch;
}

void addScenes()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("ratio");
    for (bool dark : { false, true }) {
        for (const QSize &size : { QSize(240, 4), QSize(100, 10) }) {
            for (double ratio : { 1.0, 2.0 }) {
                QTest::addRow("%s, %d x %d, ratio %g", dark ? "dark" : "light", size.width(),
                              size.height(), ratio)
                    << dark << size << ratio;
            }
        }
    }
}

} // namespace

class TestProgressTrackPainting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void bareTrack_data() { addScenes(); }
    void bareTrack();
    void fill_data() { addScenes(); }
    void fill();
    void smallestFill();
    void sweepingSegment_data() { addScenes(); }
    void sweepingSegment();
    void fillIsBackAfterTheSweep();
    void roundEnds_data();
    void roundEnds();
};

void TestProgressTrackPainting::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestProgressTrackPainting::bareTrack()
{
    QFETCH(const bool, dark);
    QFETCH(const QSize, size);
    QFETCH(const double, ratio);
    ThemeManager::instance().setDarkMode(dark);
    ProgressTrack track;
    track.resize(size);
    const QImage picture = grabWidget(track, ratio);
    const QColor line = themedColor(u"@INS_LINE"_s);
    for (double x : { size.height() / 2.0, size.width() / 2.0, size.width() - size.height() / 2.0 })
        QCOMPARE(difference(colourAt(picture, { x, size.height() / 2.0 }), line), QString());
    QCOMPARE(stretchOf(picture, themedColor(u"@INS_ACCENT"_s)).left, -1.0);
}

void TestProgressTrackPainting::fill()
{
    QFETCH(const bool, dark);
    QFETCH(const QSize, size);
    QFETCH(const double, ratio);
    ThemeManager::instance().setDarkMode(dark);
    ProgressTrack track;
    track.resize(size);
    const QColor accent = themedColor(u"@INS_ACCENT"_s);
    for (double value : { 0.1, 0.25, 0.5, 0.75, 1.0 }) {
        track.setValue(value);
        const QImage picture = grabWidget(track, ratio);
        const Stretch stretch = stretchOf(picture, accent);
        QVERIFY(stretch.left <= 1.0);
        QVERIFY(std::abs(stretch.right - value * size.width()) <= 1.0);
        for (double y : { 0.0, size.height() - 0.5 })
            QCOMPARE(difference(colourAt(picture, { size.height() / 2.0 + 0.1, y }), accent, 12),
                     QString());
        if (value < 0.9) {
            QCOMPARE(difference(colourAt(picture, { 0.95 * size.width(), size.height() / 2.0 }),
                                themedColor(u"@INS_LINE"_s)),
                     QString());
        }
    }
    track.setValue(0.0);
    QCOMPARE(stretchOf(grabWidget(track, ratio), accent).left, -1.0);
}

void TestProgressTrackPainting::smallestFill()
{
    ProgressTrack track;
    track.resize(1000, 4);
    const QImage bare = grabWidget(track);
    track.setValue(0.003); // three pixels, at the very end of which the track is round
    QVERIFY(grabWidget(track) != bare);
    track.setValue(0.0);
    QCOMPARE(grabWidget(track), bare);
}

void TestProgressTrackPainting::sweepingSegment()
{
    QFETCH(const bool, dark);
    QFETCH(const QSize, size);
    QFETCH(const double, ratio);
    ThemeManager::instance().setDarkMode(dark);
    ProgressTrack track;
    track.resize(size);
    track.setValue(1.0); // not to be seen meanwhile
    track.setIndeterminate(true);
    const QColor accent = themedColor(u"@INS_ACCENT"_s);
    const double w = size.width();
    const double segment = 0.38 * w;
    for (double phase : { 0.1, 0.3, 0.4, 0.5, 0.55, 0.7, 0.75 }) {
        track.setIndeterminatePhase(phase);
        const Stretch stretch = stretchOf(grabWidget(track, ratio), accent);
        const double left = (w + 2 * segment) * phase - segment;
        QVERIFY(std::abs(stretch.left - qMax(left, 0.0)) <= 1.0);
        QVERIFY(std::abs(stretch.right - qMin(left + segment, w)) <= 1.0);
    }
    // It comes in from beyond the left end and goes out beyond the right one.
    for (double phase : { 0.0, 0.8, 1.0 }) {
        track.setIndeterminatePhase(phase);
        QCOMPARE(stretchOf(grabWidget(track, ratio), accent).left, -1.0);
    }
}

void TestProgressTrackPainting::fillIsBackAfterTheSweep()
{
    ProgressTrack track;
    track.resize(240, 4);
    track.setValue(0.5);
    const QImage before = grabWidget(track);
    PaintWatch watch(track);
    track.setIndeterminate(true);
    QVERIFY(watch.seesRepaint());
    track.setIndeterminatePhase(0.9);
    QVERIFY(grabWidget(track) != before);
    track.setIndeterminate(false);
    QVERIFY(watch.seesRepaint());
    QCOMPARE(grabWidget(track), before);
}

void TestProgressTrackPainting::roundEnds_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("as it is") << QSize(240, 4);
    QTest::newRow("high") << QSize(100, 20);
}

void TestProgressTrackPainting::roundEnds()
{
    QFETCH(const QSize, size);
    ProgressTrack track;
    track.resize(size);
    // Two half discs and what is between them.
    const double h = size.height();
    const double area = M_PI * h * h / 4.0 + (size.width() - h) * h;
    const double bare = paintedArea(grabWidget(track, 4.0));
    QVERIFY(std::abs(bare - area) < 0.02 * h * h);
    // Neither the fill nor the segment comes out of them.
    track.setValue(1.0);
    QVERIFY(std::abs(paintedArea(grabWidget(track, 4.0)) - area) < 0.03 * h * h);
    QCOMPARE(colourAt(grabWidget(track, 4.0), { 0.1, 0.1 }).alpha(), 0);
    QCOMPARE(colourAt(grabWidget(track, 4.0), { size.width() - 0.1, h - 0.1 }).alpha(), 0);
    track.setIndeterminate(true);
    track.setIndeterminatePhase(0.25);
    QCOMPARE(colourAt(grabWidget(track, 4.0), { 0.1, 0.1 }).alpha(), 0);
    QCOMPARE(colourAt(grabWidget(track, 4.0), { 0.1, h - 0.1 }).alpha(), 0);
}

QTEST_MAIN(TestProgressTrackPainting)
#include "tst_progresstrack_painting.moc"
