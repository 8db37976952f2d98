// The mark keeps its parts as pictures, made for one size and ratio. Here they are compared with
// the vector drawings themselves.

#include "pages/lightthemetest.h"
#include "support/grab.h"
#include "widgets/animatedmark.h"
#include "widgets/look.h"

#include <QPainter>
#include <QSvgRenderer>
#include <QTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::array kRatios { 1.0, 1.25, 1.5, 2.0 };
constexpr QSize kUsualMark(136, 110);

/// A moment of the animated mark, which is to be seen in full and at rest unless it says otherwise.
struct MarkScene
{
    std::array<double, 4> entrance { 1.0, 1.0, 1.0, 1.0 };
    double fill = 1.0;
    double drift = 0.0;
    QSize size = kUsualMark;
    double ratio = 1.0;
};

constexpr QSizeF kViewBox(735, 540);

/// Where the 735 x 540 drawing lies in a mark of that size.
QRectF targetOf(const QSize &size)
{
    const double scale = qMin(size.width() / kViewBox.width(), size.height() / kViewBox.height());
    QRectF target(QPointF(), kViewBox * scale);
    target.moveCenter(QPointF(size.width(), size.height()) / 2.0);
    return target;
}

/// How a part comes in: at progress a it is (1 - a) * offset away, and smaller by (1 - a) *
/// shrinking.
struct Entrance
{
    QString file;
    QPointF offset;
    double shrinking;
};

const std::array<Entrance, 4> kEntrances { {
    { u":/mark/left.svg"_s, { -90, 0 }, 0.0 },
    { u":/mark/right.svg"_s, { 90, 0 }, 0.0 },
    { u":/mark/centre.svg"_s, { 0, 26 }, 0.45 },
    { u":/mark/triangle.svg"_s, { 0, 0 }, 0.7 },
} };

void drawParts(QPainter &painter, const MarkScene &scene, double opacity)
{
    const QRectF target = targetOf(scene.size);
    const QPointF centre = target.center();
    for (size_t part = 0; part < kEntrances.size(); ++part) {
        const auto &[file, offset, shrinking] = kEntrances[part];
        const double a = scene.entrance[part];
        if (a <= 0.001)
            continue;
        const double scale = 1.0 - (1.0 - a) * shrinking;
        painter.save();
        painter.setOpacity(opacity * qMin(a, 1.0));
        painter.translate((1.0 - a) * offset + centre);
        painter.scale(scale, scale);
        painter.translate(-centre);
        QSvgRenderer(file).render(&painter, target);
        painter.restore();
    }
}

void show(AnimatedMark &mark, const MarkScene &scene = {})
{
    mark.resize(scene.size);
    mark.setA1Progress(scene.entrance[0]);
    mark.setA2Progress(scene.entrance[1]);
    mark.setA3Progress(scene.entrance[2]);
    mark.setA4Progress(scene.entrance[3]);
    mark.setFill(scene.fill);
    mark.setDriftOffset(scene.drift);
}

/// What the widget paints.
QImage pictureOf(const MarkScene &scene)
{
    AnimatedMark mark;
    show(mark, scene);
    return grabWidget(mark, scene.ratio);
}

/// What it should paint: the scene drawn from the vector drawings, in every pixel anew.
QImage drawingOf(const MarkScene &scene)
{
    QImage drawing((QSizeF(scene.size) * scene.ratio).toSize(),
                   QImage::Format_ARGB32_Premultiplied);
    drawing.setDevicePixelRatio(scene.ratio);
    drawing.fill(Qt::transparent);
    QPainter painter(&drawing);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(0.0, scene.drift);
    drawParts(painter, scene, 0.13);
    if (scene.fill < 0.999) {
        QRectF filled = targetOf(scene.size);
        filled.setTop(filled.bottom() - scene.fill * filled.height());
        painter.setClipRect(filled);
    }
    drawParts(painter, scene, 1.0);
    return drawing;
}

/// The alphas of all pixels, row by row.
std::vector<int> alphasOf(const QImage &picture)
{
    std::vector<int> alphas;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            alphas.push_back(qAlpha(picture.pixel(x, y)));
    }
    return alphas;
}

/// The differences of alpha between two pictures, pixel by pixel.
std::vector<int> alphaDifferences(const QImage &a, const QImage &b)
{
    std::vector<int> differences = alphasOf(a);
    std::ranges::transform(differences, alphasOf(b), differences.begin(),
                           [](int x, int y) { return std::abs(x - y); });
    return differences;
}

int worstPixel(const MarkScene &scene)
{
    return std::ranges::max(alphaDifferences(pictureOf(scene), drawingOf(scene)));
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

QPointF centreOfGravity(const QImage &picture)
{
    QPointF sum;
    double weight = 0.0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const int alpha = qAlpha(picture.pixel(x, y));
            sum += alpha * QPointF(x + 0.5, y + 0.5);
            weight += alpha;
        }
    }
    return sum / weight / picture.devicePixelRatio();
}

} // namespace

class TestAnimatedMarkPainting : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void scenes_data();
    void scenes();
    void partsOnTheirWay_data();
    void partsOnTheirWay();
    void ghost();
    void nothingBelowTheThreshold();
    void edgesAreSharp();
    void newSizeAndRatioAreDrawnAnew();
    void sharpBetweenDevicePixels();
};

void TestAnimatedMarkPainting::scenes_data()
{
    QTest::addColumn<MarkScene>("scene");
    QTest::newRow("floating, half full") << MarkScene { .fill = 0.5, .drift = -4.0 };
    QTest::newRow("all come afloat")
        << MarkScene { .entrance = { 0.9, 0.7, 0.4, 0.2 }, .fill = 0.5, .drift = -3.0 };
    QTest::newRow("overshoot") << MarkScene { .entrance = { 1.0, 1.0, 1.06, 1.22 } };
    QTest::newRow("polygon under triangle") << MarkScene { .entrance = { 0.0, 0.0, 1.6, 1.0 } };
    QTest::newRow("chevrons cross") << MarkScene { .entrance = { 1.9, 1.9, 1.0, 1.0 } };
    // A part that is still outside the mark's own rectangle shows whether there is a clip.
    QTest::newRow("wide, nearly full")
        << MarkScene { .entrance = { 0.5, 0.5, 1.0, 1.0 }, .fill = 0.998, .size = { 300, 110 } };
    QTest::newRow("wide, as good as full")
        << MarkScene { .entrance = { 0.5, 0.5, 1.0, 1.0 }, .fill = 0.999, .size = { 300, 110 } };
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
        const std::vector<int> differences = alphaDifferences(actual, expected);
        const double rough =
            std::accumulate(differences.begin(), differences.end(), 0.0) / 255.0 / ratio / ratio;
        QVERIFY2(rough < 0.1 * 12.0 * target.height(), qPrintable(QString::number(rough)));
    }
}

void TestAnimatedMarkPainting::partsOnTheirWay_data()
{
    QTest::addColumn<size_t>("part");
    for (size_t part = 0; part < kEntrances.size(); ++part)
        QTest::newRow(qPrintable(kEntrances[part].file)) << part;
}

// Where each part stands and how large it is, by its centre of gravity and its area. These do not
// depend on soft edges, and so are known to a fifth of a pixel and a hundredth.
void TestAnimatedMarkPainting::partsOnTheirWay()
{
    QFETCH(const size_t, part);
    const auto &[file, offset, shrinking] = kEntrances[part];
    constexpr QMargins kRoom(100, 40, 100, 40);
    AnimatedMark mark;
    mark.setContentsMargins(kRoom);
    const auto lookAt = [&](double a, double drift) {
        MarkScene scene { .entrance = {}, .drift = drift, .size = kUsualMark.grownBy(kRoom) };
        scene.entrance[part] = a;
        show(mark, scene);
        return grabWidget(mark, 4.0);
    };
    const QImage atRest = lookAt(1.0, 0.0);
    const QPointF middle = QRectF(mark.contentsRect()).center();
    for (double a : { 0.15, 0.3, 0.6, 0.9, 1.1 }) {
        for (double drift : { 0.0, -3.0 }) {
            const QImage picture = lookAt(a, drift);
            const double scale = 1.0 - (1.0 - a) * shrinking;
            const QPointF place = (centreOfGravity(atRest) - middle) * scale + middle
                + (1.0 - a) * offset + QPointF(0.0, drift);
            const QPointF miss = centreOfGravity(picture) - place;
            QVERIFY2(std::hypot(miss.x(), miss.y()) < 0.2,
                     qPrintable(u"%1 by %2 %3"_s.arg(a).arg(miss.x()).arg(miss.y())));
            // However faint the part is.
            const double opacity =
                double(std::ranges::max(alphasOf(picture))) / std::ranges::max(alphasOf(atRest));
            const double area = paintedArea(picture) / paintedArea(atRest) / opacity;
            QVERIFY2(std::abs(area / (scale * scale) - 1.0) < 0.02,
                     qPrintable(u"%1: %2"_s.arg(a).arg(area)));
        }
    }
}

void TestAnimatedMarkPainting::ghost()
{
    const QMap<double, double> opacities { { 0.5, 0.065 }, { 1.0, 0.13 }, { 1.1, 0.13 } };
    for (const auto [entrance, opacity] : opacities.asKeyValueRange()) {
        const QImage picture = pictureOf({ .entrance = { 0.0, 0.0, entrance, 0.0 }, .fill = 0.0 });
        const double alpha = colourAt(picture, { 61.0, 55.0 }).alphaF();
        // Painting rounds down, twice, to a 255th.
        QVERIFY2(alpha < opacity + 0.001 && alpha > opacity - 0.0085,
                 qPrintable(QString::number(alpha)));
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

// At rest the mark is what the vector drawing is on this screen, to the last pixel. So it is
// between two device pixels, where a picture that is smoothed into its place would be soft.
void TestAnimatedMarkPainting::edgesAreSharp()
{
    for (double ratio : kRatios) {
        QList<MarkScene> scenes;
        for (const QSize &size : { kUsualMark, QSize(140, 100), QSize(64, 64) })
            scenes << MarkScene { .size = size, .ratio = ratio };
        for (int eighths : { 1, 3, 4, 7, 11, 20 })
            scenes << MarkScene { .drift = -eighths / 8.0 / ratio, .ratio = ratio };
        // The ghost's own soft edge under that of the colour is all that may be missing.
        for (const MarkScene &scene : scenes)
            QVERIFY2(worstPixel(scene) <= 9, qPrintable(u"%1 %2"_s.arg(ratio).arg(scene.drift)));
        QVERIFY(worstPixel({ .fill = 0.0, .ratio = ratio }) <= 4);
    }
}

void TestAnimatedMarkPainting::newSizeAndRatioAreDrawnAnew()
{
    AnimatedMark mark;
    show(mark);
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
        return int(std::ranges::count_if(alphasOf(picture),
                                         [](int alpha) { return alpha > 0 && alpha < 255; }));
    };
    QWidget parent;
    parent.resize(200, 200);
    auto *mark = new AnimatedMark(&parent);
    mark->move(33, 22);
    show(*mark);
    for (double ratio : { 1.25, 1.5 }) {
        const int atBest = softPixels(pictureOf({ .ratio = ratio }));
        const int here = softPixels(grabWidget(parent, ratio));
        QVERIFY2(here <= atBest * 1.05, qPrintable(u"%1 instead of %2"_s.arg(here).arg(atBest)));
    }
}

QTEST_MAIN(TestAnimatedMarkPainting)
#include "tst_animatedmark_painting.moc"
