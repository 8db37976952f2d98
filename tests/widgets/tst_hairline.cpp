#include "widgets/hairline.h"

#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QRgb kOutside = qRgb(255, 255, 255);
constexpr QRgb kGround = qRgb(0xf6, 0xf8, 0xfb);
constexpr QRgb kLine = qRgb(0xe3, 0xe8, 0xef);

/// The colours across the middle of `picture`, beginning with what lies beyond `edge`.
QList<QRgb> coloursFrom(const QImage &picture, Qt::Edge edge)
{
    const QPoint middle = picture.rect().center();
    const bool isUpright = edge == Qt::TopEdge || edge == Qt::BottomEdge;
    QList<QRgb> colours;
    for (int i = 0; i < (isUpright ? picture.height() : picture.width()); ++i)
        colours.append(isUpright ? picture.pixel(middle.x(), i) : picture.pixel(i, middle.y()));
    if (edge == Qt::BottomEdge || edge == Qt::RightEdge)
        std::reverse(colours.begin(), colours.end());
    return colours;
}

int count(const QImage &picture, QRgb colour)
{
    int pixels = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            pixels += picture.pixel(x, y) == colour ? 1 : 0;
    }
    return pixels;
}

} // namespace

class TestHairline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void keepsToItsEdge_data();
    void keepsToItsEdge();
    void leavesThePainterAsItWas();
};

void TestHairline::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestHairline::keepsToItsEdge_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<int>("thickness");
    const QPair<double, int> ratios[] = {
        { 1.0, 1 }, { 1.25, 1 }, { 1.5, 1 }, { 1.75, 1 },
        { 2.0, 2 }, { 2.25, 2 }, { 2.5, 2 }, { 3.0, 3 },
    };
    for (const auto &[ratio, thickness] : ratios)
        QTest::addRow("ratio %g", ratio) << ratio << thickness;
}

// Wherever the edge comes to lie, there is nothing between it and the line, which is equally thick
// everywhere, as long as the edge, and of its colour alone.
void TestHairline::keepsToItsEdge()
{
    QFETCH(const double, ratio);
    QFETCH(const int, thickness);
    for (Qt::Edge edge : { Qt::TopEdge, Qt::BottomEdge, Qt::LeftEdge, Qt::RightEdge }) {
        for (int place = 1; place < 17; ++place) {
            QImage picture((QSizeF(48, 48) * ratio).toSize(), QImage::Format_RGB32);
            picture.setDevicePixelRatio(ratio);
            picture.fill(kOutside);
            QPainter painter(&picture);
            const QRect rect(place, place, 26, 26);
            painter.fillRect(rect, QColor(kGround));
            const int area = picture.width() * picture.height() - count(picture, kOutside);
            painter.setRenderHint(QPainter::Antialiasing);
            paintHairline(painter, rect, edge, QColor(kLine));
            painter.end();

            const QList<QRgb> colours = coloursFrom(picture, edge);
            const qsizetype begin = colours.indexOf(kLine);
            QVERIFY2(begin > 0 && colours[begin - 1] == kOutside,
                     qPrintable(u"edge %1 at %2"_s.arg(edge).arg(place)));
            QCOMPARE(colours[begin + thickness - 1], kLine);
            QCOMPARE(colours[begin + thickness], kGround);
            const int length = int(std::lround(std::sqrt(area))); // the area is a square
            QCOMPARE(count(picture, kLine), thickness * length);
            QCOMPARE(count(picture, kGround), (length - thickness) * length);
        }
    }
}

void TestHairline::leavesThePainterAsItWas()
{
    QImage picture(4, 4, QImage::Format_RGB32);
    QPainter painter(&picture);
    for (bool antialiased : { true, false }) {
        painter.setRenderHint(QPainter::Antialiasing, antialiased);
        paintHairline(painter, picture.rect(), Qt::TopEdge, Qt::black);
        QCOMPARE(painter.testRenderHint(QPainter::Antialiasing), antialiased);
    }
}

QTEST_MAIN(TestHairline)
#include "tst_hairline.moc"
