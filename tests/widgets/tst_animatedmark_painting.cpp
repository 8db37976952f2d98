// The mark keeps its parts as pictures, made for one size and ratio. Here they are compared with
// the vector drawings themselves.

#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/animatedmark.h"
#include "widgets/look.h"
#include "widgets/markscene.h"

#include <QFile>
#include <QTest>

#include <array>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::array kRatios { 1.0, 1.25, 1.5, 2.0 };

/// The sum of all differences of alpha between two pictures, in square pixels.
double roughness(const QImage &a, const QImage &b)
{
    double sum = 0.0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            sum += std::abs(qAlpha(p) - qAlpha(q)) / 255.0;
        }
    }
    return sum / (a.devicePixelRatio() * a.devicePixelRatio());
}

/// The largest difference of alpha between two pictures, of 255.
int worstPixel(const QImage &a, const QImage &b)
{
    int worst = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            worst = qMax(worst, std::abs(qAlpha(a.pixel(x, y)) - qAlpha(b.pixel(x, y))));
    }
    return worst;
}

/// Where the colours differ although there is no edge nearby; empty if nowhere.
QString differenceInside(const QImage &actual, const QImage &expected)
{
    const auto isFlat = [](const QImage &image, int x, int y) {
        const QRgb here = image.pixel(x, y);
        for (int dy = -2; dy <= 2; ++dy) {
            for (int dx = -2; dx <= 2; ++dx) {
                if (image.valid(x + dx, y + dy) && image.pixel(x + dx, y + dy) != here)
                    return false;
            }
        }
        return true;
    };
    for (int y = 0; y < expected.height(); ++y) {
        for (int x = 0; x < expected.width(); ++x) {
            if (!isFlat(expected, x, y))
                continue;
            const QString unlike =
                difference(actual.pixelColor(x, y), expected.pixelColor(x, y), 4);
            if (!unlike.isEmpty())
                return u"at %1, %2: "_s.arg(x).arg(y) + unlike;
        }
    }
    return {};
}

} // namespace

class TestAnimatedMarkPainting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void colours_data();
    void colours();
    void drawings_data();
    void drawings();
    void scenes_data();
    void scenes();
    void nothingBelowTheThreshold();
    void ghost_data();
    void ghost();
    void faintWhileItComes();
    void filledFromTheBottom_data();
    void filledFromTheBottom();
    void asGoodAsFullHasNoClip();
    void clipDriftsToo();
    void edgesAreSharpAtRest();
    void edgesAreSharpAfloat();
    void driftsByFractionsOfAPixel();
    void newSizeAndRatioAreDrawnAnew();
    void sharpBetweenDevicePixels();
    void sameInBothThemes();
};

void TestAnimatedMarkPainting::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestAnimatedMarkPainting::colours_data()
{
    QTest::addColumn<QPointF>("place");
    QTest::addColumn<QColor>("colour");
    QTest::newRow("left chevron") << QPointF(70, 270) << QColor(0x0e, 0x17, 0x30);
    QTest::newRow("right chevron") << QPointF(665, 270) << QColor(0x54, 0x54, 0x54);
    QTest::newRow("central polygon") << QPointF(330, 270) << QColor(0x06, 0x4c, 0xad);
    QTest::newRow("triangle") << QPointF(462, 190) << QColor(0xff, 0x31, 0x31);
    QTest::newRow("between") << QPointF(540, 330) << QColor(Qt::transparent);
}

void TestAnimatedMarkPainting::colours()
{
    QFETCH(const QPointF, place);
    QFETCH(const QColor, colour);
    for (const QSize &size : { kUsualMark, QSize(300, 110), QSize(136, 300) }) {
        for (double ratio : kRatios) {
            const QImage picture = pictureOf({ .size = size, .ratio = ratio });
            const QColor actual = colourAt(picture, placeOf(place.x(), place.y(), size));
            QCOMPARE(difference(actual, colour), QString());
        }
    }
}

// Drawn into one rectangle the four make one logo only if they share their view box.
void TestAnimatedMarkPainting::drawings_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("shape");
    QTest::addColumn<QString>("fill");
    QTest::newRow("left") << u":/mark/left.svg"_s << u"<path"_s << u"#0e1730"_s;
    QTest::newRow("right") << u":/mark/right.svg"_s << u"<path"_s << u"#545454"_s;
    QTest::newRow("centre") << u":/mark/centre.svg"_s << u"<polygon"_s << u"#064cad"_s;
    QTest::newRow("triangle") << u":/mark/triangle.svg"_s << u"<polygon"_s << u"#ff3131"_s;
}

void TestAnimatedMarkPainting::drawings()
{
    QFETCH(const QString, file);
    QFETCH(const QString, shape);
    QFETCH(const QString, fill);
    QFile drawing(file);
    QVERIFY(drawing.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(drawing.readAll());
    QVERIFY(text.contains(u"viewBox=\"0 0 735 540\""_s));
    QCOMPARE(text.count(u"fill=\""_s), 1);
    QVERIFY(text.contains(u"fill=\"%1\""_s.arg(fill)));
    QCOMPARE(text.count(shape), 1);
}

void TestAnimatedMarkPainting::scenes_data()
{
    QTest::addColumn<MarkScene>("scene");
    QTest::newRow("at rest") << MarkScene {};
    QTest::newRow("empty") << MarkScene { .fill = 0.0 };
    QTest::newRow("a quarter") << MarkScene { .fill = 0.25 };
    QTest::newRow("half") << MarkScene { .fill = 0.5 };
    QTest::newRow("nearly full") << MarkScene { .fill = 0.998 };
    QTest::newRow("as good as full") << MarkScene { .fill = 0.999 };
    QTest::newRow("floating") << MarkScene { .drift = -4.0 };
    QTest::newRow("floating, half full") << MarkScene { .fill = 0.5, .drift = -3.0 };
    QTest::newRow("floating by a fraction") << MarkScene { .drift = -1.5 };
    QTest::newRow("all come afloat")
        << MarkScene { .entrance = { 0.9, 0.7, 0.4, 0.2 }, .fill = 0.5, .drift = -3.0 };
    QTest::newRow("left chevron comes") << MarkScene { .entrance = { 0.5, 0.0, 0.0, 0.0 } };
    QTest::newRow("right chevron comes") << MarkScene { .entrance = { 0.0, 0.6, 0.0, 0.0 } };
    QTest::newRow("polygon comes") << MarkScene { .entrance = { 0.0, 0.0, 0.5, 0.0 } };
    QTest::newRow("triangle comes") << MarkScene { .entrance = { 0.0, 0.0, 0.0, 0.5 } };
    QTest::newRow("all come") << MarkScene { .entrance = { 0.9, 0.7, 0.4, 0.2 } };
    QTest::newRow("all come, half full")
        << MarkScene { .entrance = { 0.9, 0.7, 0.4, 0.2 }, .fill = 0.5 };
    QTest::newRow("overshoot") << MarkScene { .entrance = { 1.0, 1.0, 1.06, 1.22 } };
    QTest::newRow("overshoot, empty")
        << MarkScene { .entrance = { 1.0, 1.0, 1.06, 1.22 }, .fill = 0.0 };
    QTest::newRow("polygon under triangle") << MarkScene { .entrance = { 0.0, 0.0, 1.6, 1.0 } };
    QTest::newRow("chevrons cross") << MarkScene { .entrance = { 1.9, 1.9, 1.0, 1.0 } };
    QTest::newRow("wide") << MarkScene { .entrance = { 0.5, 0.5, 1.0, 1.0 }, .size = { 300, 110 } };
    QTest::newRow("wide, nearly full")
        << MarkScene { .entrance = { 0.5, 0.5, 1.0, 1.0 }, .fill = 0.998, .size = { 300, 110 } };
    QTest::newRow("high") << MarkScene { .fill = 0.6, .size = { 100, 200 } };
    QTest::newRow("icon") << MarkScene { .size = { 16, 16 } };
}

void TestAnimatedMarkPainting::scenes()
{
    QFETCH(MarkScene, scene);
    const QRectF target = targetOf(scene.size);
    const double area = target.width() * target.height();
    for (double ratio : kRatios) {
        scene.ratio = ratio;
        const QImage actual = pictureOf(scene);
        const QImage expected = drawingOf(scene);
        QCOMPARE(actual.size(), expected.size());
        QCOMPARE(differenceInside(actual, expected), QString());
        QVERIFY(std::abs(paintedArea(actual) - paintedArea(expected)) < 0.01 * area);
        // A shift of a tenth of a pixel would make it this rough at all the upright edges.
        const double rough = roughness(actual, expected);
        QVERIFY2(rough < 0.1 * 12.0 * target.height(), qPrintable(QString::number(rough)));
    }
}

void TestAnimatedMarkPainting::nothingBelowTheThreshold()
{
    for (double a : { 0.0, 0.001, -0.2 }) {
        for (double fill : { 0.0, 1.0 }) {
            const QImage picture = pictureOf({ .entrance = { a, a, a, a }, .fill = fill });
            QCOMPARE(pixelsUnlike(picture, Qt::transparent), 0);
        }
    }
    QVERIFY(pixelsUnlike(pictureOf({ .entrance = { 0.02, 0, 1.0, 0 } }), Qt::transparent) > 0);
}

void TestAnimatedMarkPainting::ghost_data()
{
    QTest::addColumn<double>("entrance");
    QTest::addColumn<double>("opacity");
    QTest::newRow("half come") << 0.5 << 0.065;
    QTest::newRow("nearly come") << 0.9 << 0.117;
    QTest::newRow("come") << 1.0 << 0.13;
    QTest::newRow("overshoot") << 1.1 << 0.13;
}

void TestAnimatedMarkPainting::ghost()
{
    QFETCH(const double, entrance);
    QFETCH(const double, opacity);
    const QImage picture = pictureOf({ .entrance = { 0, 0, entrance, 0 }, .fill = 0.0 });
    const double alpha = colourAt(picture, placeOf(330, 270)).alphaF();
    // Painting rounds down, twice, to a 255th.
    QVERIFY2(alpha < opacity + 0.001 && alpha > opacity - 0.0085,
             qPrintable(QString::number(alpha)));
}

void TestAnimatedMarkPainting::faintWhileItComes()
{
    const QImage picture = pictureOf({ .entrance = { 0, 0, 0.5, 0 } });
    const double alpha = colourAt(picture, placeOf(330, 270)).alphaF();
    QVERIFY(std::abs(alpha - (1.0 - (1.0 - 0.065) * (1.0 - 0.5))) < 0.01);
}

void TestAnimatedMarkPainting::filledFromTheBottom_data()
{
    QTest::addColumn<double>("fill");
    for (double fill : { 0.0, 0.1, 0.43, 0.5, 0.75, 0.9, 1.0 })
        QTest::addRow("%g", fill) << fill;
}

void TestAnimatedMarkPainting::filledFromTheBottom()
{
    QFETCH(const double, fill);
    const QImage picture = pictureOf({ .fill = fill, .ratio = 2.0 });
    // Down the left edge's bar, from the top of the chevron to its end.
    const double surface = 540.0 * (1.0 - fill);
    for (double y = 40.0; y < 500.0; y += 10.0) {
        if (std::abs(y - surface) < 8.0)
            continue;
        const double x = 60.0 + std::abs(y - 270.0) * 108.0 / 240.0;
        const double alpha = colourAt(picture, placeOf(x, y)).alphaF();
        const double expected = y > surface ? 1.0 : 0.13;
        QVERIFY2(std::abs(alpha - expected) < 0.01, qPrintable(u"%1 at %2"_s.arg(alpha).arg(y)));
    }
}

// A part that is still outside the mark's own rectangle shows whether there is a clip.
void TestAnimatedMarkPainting::asGoodAsFullHasNoClip()
{
    const QSize wide(300, 110);
    const QPointF outside = placeOf(70, 270, wide) - QPointF(45, 0);
    QVERIFY(outside.x() < targetOf(wide).left());
    const auto alphaAt = [&](double fill) {
        const MarkScene scene { .entrance = { 0.5, 0, 0, 0 }, .fill = fill, .size = wide };
        return colourAt(pictureOf(scene), outside).alphaF();
    };
    QVERIFY(std::abs(alphaAt(0.9989) - 0.065) < 0.0095);
    QVERIFY(std::abs(alphaAt(0.999) - 0.5325) < 0.01);
    QVERIFY(std::abs(alphaAt(1.0) - 0.5325) < 0.01);
}

void TestAnimatedMarkPainting::clipDriftsToo()
{
    // Half full, the surface lies at the middle of the widget, and four pixels higher afloat.
    for (double drift : { 0.0, -4.0 }) {
        const QImage picture = pictureOf({ .fill = 0.5, .drift = drift });
        const QPointF surface = placeOf(57, 270) + QPointF(0, drift);
        QVERIFY(colourAt(picture, surface + QPointF(0, 1.2)).alpha() > 250);
        QVERIFY(colourAt(picture, surface - QPointF(0, 1.2)).alpha() < 40);
    }
}

// At rest the mark is what the vector drawing is on this screen, to the last pixel.
void TestAnimatedMarkPainting::edgesAreSharpAtRest()
{
    for (const QSize &size : { kUsualMark, QSize(140, 100), QSize(64, 64) }) {
        for (double ratio : kRatios) {
            // The ghost's own soft edge under that of the colour is all that may be missing.
            const MarkScene scene { .size = size, .ratio = ratio };
            QVERIFY(worstPixel(pictureOf(scene), drawingOf(scene)) <= 9);
            const MarkScene empty { .fill = 0.0, .size = size, .ratio = ratio };
            QVERIFY(worstPixel(pictureOf(empty), drawingOf(empty)) <= 4);
        }
    }
}

// Also between two device pixels: a picture that is smoothed into its place would be soft there.
void TestAnimatedMarkPainting::edgesAreSharpAfloat()
{
    for (double ratio : kRatios) {
        for (int eighths : { 1, 3, 4, 7, 11, 20 }) {
            for (double fill : { 0.0, 1.0 }) {
                const MarkScene scene { .fill = fill,
                                        .drift = -eighths / 8.0 / ratio,
                                        .ratio = ratio };
                const int worst = worstPixel(pictureOf(scene), drawingOf(scene));
                QVERIFY2(worst <= 9, qPrintable(QString::number(worst)));
            }
        }
    }
}

void TestAnimatedMarkPainting::driftsByFractionsOfAPixel()
{
    for (double ratio : kRatios) {
        const double atRest = centreOfGravity(pictureOf({ .ratio = ratio })).y();
        for (double drift = -0.25; drift >= -4.0; drift -= 0.25) {
            const QImage picture = pictureOf({ .drift = drift, .ratio = ratio });
            const double way = centreOfGravity(picture).y() - atRest;
            QVERIFY2(std::abs(way - drift) < 0.06, qPrintable(u"%1 for %2"_s.arg(way).arg(drift)));
        }
    }
}

void TestAnimatedMarkPainting::newSizeAndRatioAreDrawnAnew()
{
    AnimatedMark mark;
    mark.setA1Progress(1.0);
    mark.setA2Progress(1.0);
    mark.setA3Progress(1.0);
    mark.setA4Progress(1.0);
    for (const QSize &size : { kUsualMark, QSize(68, 55), QSize(272, 220), QSize(110, 136) }) {
        mark.resize(size);
        for (double ratio : kRatios)
            QCOMPARE(grabWidget(mark, ratio), pictureOf({ .size = size, .ratio = ratio }));
    }
}

// At such a ratio the widget itself begins between two device pixels.
void TestAnimatedMarkPainting::sharpBetweenDevicePixels()
{
    const auto softPixels = [](const QImage &picture) {
        int soft = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const int alpha = qAlpha(picture.pixel(x, y));
                soft += alpha > 0 && alpha < 255 ? 1 : 0;
            }
        }
        return soft;
    };
    QWidget parent;
    parent.resize(200, 200);
    auto *mark = new AnimatedMark(&parent);
    mark->setGeometry(QRect(QPoint(33, 22), kUsualMark));
    mark->setA1Progress(1.0);
    mark->setA2Progress(1.0);
    mark->setA3Progress(1.0);
    mark->setA4Progress(1.0);
    for (double ratio : { 1.25, 1.5 }) {
        const int atBest = softPixels(pictureOf({ .ratio = ratio }));
        const int here = softPixels(grabWidget(parent, ratio));
        QVERIFY2(here <= atBest * 1.05, qPrintable(u"%1 instead of %2"_s.arg(here).arg(atBest)));
    }
}

void TestAnimatedMarkPainting::sameInBothThemes()
{
    const MarkScene scene { .entrance = { 1.0, 1.0, 0.8, 0.6 }, .fill = 0.5 };
    const QImage light = pictureOf(scene);
    ThemeManager::instance().setDarkMode(true);
    QCOMPARE(pictureOf(scene), light);
}

QTEST_MAIN(TestAnimatedMarkPainting)
#include "tst_animatedmark_painting.moc"
