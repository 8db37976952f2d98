#include "app/applicationicon.h"

#include <QColor>
#include <QImage>
#include <QPixmap>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kSides[] = { 16, 20, 24, 32, 40, 48, 64, 128, 256 };

/// The drawing's own size, and the rectangle in it that its shapes fill.
constexpr QSizeF kDrawing(735, 540);
constexpr QRectF kShapes(6, 30, 723, 480);

/// The smallest rectangle that holds every pixel that is not fully transparent.
QRect painted(const QImage &image)
{
    QRect rect;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() > 0)
                rect |= QRect(x, y, 1, 1);
        }
    }
    return rect;
}

} // namespace

class TestApplicationIcon : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void sizes();
    void pictures_data();
    void pictures();
    void colours();
    void edgesAreSmooth();
    void withoutDrawingThereIsNoIcon();
};

void TestApplicationIcon::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestApplicationIcon::sizes()
{
    const QIcon icon = applicationIcon();
    QVERIFY(!icon.isNull());
    QList<QSize> expected;
    for (const int side : kSides)
        expected << QSize(side, side);
    QCOMPARE(icon.availableSizes(QIcon::Normal, QIcon::Off), expected);
    QCOMPARE(icon.availableSizes(QIcon::Normal, QIcon::On), QList<QSize>());
    QCOMPARE(icon.availableSizes(QIcon::Disabled, QIcon::Off), QList<QSize>());
}

void TestApplicationIcon::pictures_data()
{
    QTest::addColumn<int>("side");
    for (const int side : kSides)
        QTest::addRow("%d", side) << side;
}

// As wide as the square, in the middle of its height, and nothing but the drawing.
void TestApplicationIcon::pictures()
{
    QFETCH(const int, side);
    const QImage image = applicationIcon().pixmap(QSize(side, side), 1.0).toImage();
    QCOMPARE(image.size(), QSize(side, side));
    QVERIFY(image.hasAlphaChannel());

    const double scale = side / kDrawing.width();
    const double top = (side - kDrawing.height() * scale) / 2;
    const QRectF expected(kShapes.x() * scale, top + kShapes.y() * scale, kShapes.width() * scale,
                          kShapes.height() * scale);
    // A pixel that the edge only touches may be so faint that it is nothing.
    const QRect area = painted(image);
    QVERIFY2(expected.toAlignedRect().contains(area), qPrintable(QString::number(area.top())));
    QVERIFY(area.contains(expected.toAlignedRect().adjusted(1, 1, -1, -1)));
    QCOMPARE(area.left(), side - 1 - area.right());
    QCOMPARE(area.top(), side - 1 - area.bottom());

    // The middle of each of the four shapes is there.
    for (const QPointF point :
         { QPointF(60, 270), QPointF(675, 270), QPointF(330, 310), QPointF(462, 200) }) {
        const QPoint pixel(int(point.x() * scale), int(top + point.y() * scale));
        QVERIFY(image.pixelColor(pixel).alpha() > 150);
    }
}

void TestApplicationIcon::colours()
{
    const QImage image = applicationIcon().pixmap(QSize(256, 256), 1.0).toImage();
    const double scale = 256 / kDrawing.width();
    const double top = (256 - kDrawing.height() * scale) / 2;
    const auto at = [&](double x, double y) {
        return image.pixelColor(int(x * scale), int(top + y * scale)).name(QColor::HexArgb);
    };
    QCOMPARE(at(60, 270), u"#ff0e1730"_s);
    QCOMPARE(at(675, 270), u"#ff545454"_s);
    QCOMPARE(at(330, 310), u"#ff064cad"_s);
    QCOMPARE(at(462, 200), u"#ffff3131"_s);
    QCOMPARE(at(250, 60), u"#00000000"_s);
    QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
    QCOMPARE(image.pixelColor(255, 255).alpha(), 0);
}

void TestApplicationIcon::edgesAreSmooth()
{
    const QImage image = applicationIcon().pixmap(QSize(64, 64), 1.0).toImage();
    int halfTransparent = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int alpha = image.pixelColor(x, y).alpha();
            halfTransparent += alpha > 0 && alpha < 255 ? 1 : 0;
        }
    }
    QVERIFY(halfTransparent > 50);
}

void TestApplicationIcon::withoutDrawingThereIsNoIcon()
{
    Q_CLEANUP_RESOURCE(resources);
    const auto restore = qScopeGuard([] { Q_INIT_RESOURCE(resources); });
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(u"Cannot open file.*varnel-logo\\.svg"_s));
    QVERIFY(applicationIcon().isNull());
}

QTEST_MAIN(TestApplicationIcon)
#include "tst_applicationicon.moc"
