#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "widgets/animatedmark.h"
#include "widgets/look.h"

#include <QTest>

#include <array>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize kUsualMark(136, 110);

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

/// In square pixels, however faint the part is.
double areaOfPart(const QImage &picture)
{
    int opacity = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            opacity = qMax(opacity, qAlpha(picture.pixel(x, y)));
    }
    return paintedArea(picture) * 255.0 / opacity;
}

} // namespace

class TestAnimatedMarkEntrance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void partsOnTheirWay_data();
    void partsOnTheirWay();
    void ghost_data();
    void ghost();
};

void TestAnimatedMarkEntrance::partsOnTheirWay_data()
{
    QTest::addColumn<size_t>("part");
    QTest::addColumn<QPointF>("offset");
    QTest::addColumn<double>("shrinking");
    QTest::newRow("left chevron") << size_t(0) << QPointF(-90, 0) << 0.0;
    QTest::newRow("right chevron") << size_t(1) << QPointF(90, 0) << 0.0;
    QTest::newRow("polygon") << size_t(2) << QPointF(0, 26) << 0.45;
    QTest::newRow("triangle") << size_t(3) << QPointF(0, 0) << 0.7;
}

// Where each part stands and how large it is, by its centre of gravity and its area. These do not
// depend on soft edges, and so are known to a fifth of a pixel and a hundredth.
void TestAnimatedMarkEntrance::partsOnTheirWay()
{
    QFETCH(const size_t, part);
    QFETCH(const QPointF, offset);
    QFETCH(const double, shrinking);
    constexpr QMargins kRoom(100, 40, 100, 40);
    AnimatedMark mark;
    mark.setContentsMargins(kRoom);
    mark.resize(kUsualMark.grownBy(kRoom));
    const QPointF middle = QRectF(mark.contentsRect()).center();
    const auto lookAt = [&](double a, double drift) {
        const std::array setters { &AnimatedMark::setA1Progress, &AnimatedMark::setA2Progress,
                                   &AnimatedMark::setA3Progress, &AnimatedMark::setA4Progress };
        (mark.*setters[part])(a);
        mark.setDriftOffset(drift);
        return grabWidget(mark, 4.0);
    };
    const QImage atRest = lookAt(1.0, 0.0);
    for (double a : { 0.15, 0.3, 0.6, 0.9, 1.1 }) {
        for (double drift : { 0.0, -3.0 }) {
            const QImage picture = lookAt(a, drift);
            const double scale = 1.0 - (1.0 - a) * shrinking;
            const QPointF place = (centreOfGravity(atRest) - middle) * scale + middle
                + (1.0 - a) * offset + QPointF(0.0, drift);
            const QPointF miss = centreOfGravity(picture) - place;
            QVERIFY2(std::hypot(miss.x(), miss.y()) < 0.2,
                     qPrintable(u"%1 by %2 %3"_s.arg(a).arg(miss.x()).arg(miss.y())));
            const double area = areaOfPart(picture) / areaOfPart(atRest);
            QVERIFY2(std::abs(area / (scale * scale) - 1.0) < 0.02,
                     qPrintable(u"%1: %2"_s.arg(a).arg(area)));
        }
    }
}

void TestAnimatedMarkEntrance::ghost_data()
{
    QTest::addColumn<double>("entrance");
    QTest::addColumn<double>("opacity");
    QTest::newRow("half come") << 0.5 << 0.065;
    QTest::newRow("come") << 1.0 << 0.13;
    QTest::newRow("overshoot") << 1.1 << 0.13;
}

void TestAnimatedMarkEntrance::ghost()
{
    QFETCH(const double, entrance);
    QFETCH(const double, opacity);
    AnimatedMark mark;
    mark.resize(kUsualMark);
    mark.setA1Progress(0.0);
    mark.setA2Progress(0.0);
    mark.setA3Progress(entrance);
    mark.setA4Progress(0.0);
    mark.setFill(0.0);
    const double alpha = colourAt(grabWidget(mark), { 61.0, 55.0 }).alphaF();
    // Painting rounds down, twice, to a 255th.
    QVERIFY2(alpha < opacity + 0.001 && alpha > opacity - 0.0085,
             qPrintable(QString::number(alpha)));
}

QTEST_MAIN(TestAnimatedMarkEntrance)
#include "tst_animatedmark_entrance.moc"
