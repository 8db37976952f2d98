#include "wizard/windowshape.h"

#include <QTest>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

/// Pixels that the arc only just touches are everybody's.
constexpr double kRounding = 0.2;

class TestWindowShape : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void measures();
    void cornersAreOut();
};

void TestWindowShape::measures()
{
    QCOMPARE(kWindowSize, QSize(680, 474));
    QCOMPARE(kCornerRadius, 11);
}

void TestWindowShape::cornersAreOut()
{
    const QRegion shape = windowShape();
    QCOMPARE(shape.boundingRect(), QRect(QPoint(), kWindowSize));
    const QPoint right(kWindowSize.width() - 1, 0);
    const QPoint bottom(0, kWindowSize.height() - 1);
    // From a corner towards the middle of the window.
    const QPair<QPoint, QPoint> corners[] = {
        { QPoint(), QPoint(1, 1) },
        { right, QPoint(-1, 1) },
        { bottom, QPoint(1, -1) },
        { right + bottom, QPoint(-1, -1) },
    };
    for (const auto &[corner, inwards] : corners) {
        for (int step = 0; step <= 2; ++step)
            QVERIFY(!shape.contains(corner + step * inwards));
        for (int step = 4; step <= 12; ++step)
            QVERIFY(shape.contains(corner + step * inwards));
        QVERIFY(shape.contains(corner + 12 * QPoint(inwards.x(), 0)));
        QVERIFY(shape.contains(corner + 12 * QPoint(0, inwards.y())));
    }
    QVERIFY(shape.contains(QRect(QPoint(), kWindowSize).center()));

    // A pixel is in it if its outer corner, and so all of it, is: half a pixel would show black.
    for (int y = 0; y < kCornerRadius; ++y) {
        for (int x = 0; x < kCornerRadius; ++x) {
            const double distance = std::hypot(kCornerRadius - x, kCornerRadius - y);
            if (std::abs(distance - kCornerRadius) < kRounding)
                continue;
            const QPoint inwards(x, y);
            for (const auto &[corner, direction] : corners) {
                const QPoint pixel =
                    corner + QPoint(inwards.x() * direction.x(), inwards.y() * direction.y());
                QCOMPARE(shape.contains(pixel), distance < kCornerRadius);
            }
        }
    }
}

QTEST_APPLESS_MAIN(TestWindowShape)
#include "tst_windowshape.moc"
