#include "widgets/hairline.h"

#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestHairline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void staysSharp_data();
    void staysSharp();
    void leavesThePainterAsItWas();
};

void TestHairline::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestHairline::staysSharp_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<int>("thickness");
    QTest::newRow("ratio 1") << 1.0 << 1;
    QTest::newRow("ratio 1.25") << 1.25 << 1;
    QTest::newRow("ratio 1.5") << 1.5 << 1;
    QTest::newRow("ratio 2") << 2.0 << 2;
}

// At every place a line may come to lie, it is equally thick, and of its colour alone.
void TestHairline::staysSharp()
{
    QFETCH(const double, ratio);
    QFETCH(const int, thickness);
    for (int y = 0; y < 48; ++y) {
        QImage picture((QSizeF(10, 48) * ratio).toSize(), QImage::Format_RGB32);
        picture.setDevicePixelRatio(ratio);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        paintHairline(painter, QRect(0, y, 10, 1), QColor(0xe3, 0xe8, 0xef));
        painter.end();
        int lines = 0;
        for (int row = 0; row < picture.height(); ++row) {
            const QRgb pixel = picture.pixel(5, row);
            QVERIFY(pixel == qRgb(255, 255, 255) || pixel == qRgb(0xe3, 0xe8, 0xef));
            lines += pixel != qRgb(255, 255, 255) ? 1 : 0;
        }
        QVERIFY2(lines == thickness, qPrintable(QString::number(y)));
    }
}

void TestHairline::leavesThePainterAsItWas()
{
    QImage picture(4, 4, QImage::Format_RGB32);
    QPainter painter(&picture);
    for (bool antialiased : { true, false }) {
        painter.setRenderHint(QPainter::Antialiasing, antialiased);
        paintHairline(painter, QRect(0, 0, 4, 1), Qt::black);
        QCOMPARE(painter.testRenderHint(QPainter::Antialiasing), antialiased);
    }
}

QTEST_MAIN(TestHairline)
#include "tst_hairline.moc"
