#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "widgets/hairline.h"
#include "widgets/look.h"

#include <QPainter>

using namespace Qt::Literals::StringLiterals;

class TestHairline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void keepsToItsEdge_data();
    void keepsToItsEdge();
};

void TestHairline::keepsToItsEdge_data()
{
    QTest::addColumn<double>("ratio");
    for (double ratio : kScreenRatios)
        QTest::addRow("ratio %g", ratio) << ratio;
}

// Wherever the edge comes to lie, there is nothing between it and the line, which is equally thick
// everywhere, as long as the edge, and of its colour alone.
void TestHairline::keepsToItsEdge()
{
    QFETCH(const double, ratio);
    for (Qt::Edge edge : { Qt::TopEdge, Qt::BottomEdge, Qt::LeftEdge, Qt::RightEdge }) {
        for (int place = 1; place < 17; ++place) {
            const bool antialiased = place % 2 == 0;
            QImage picture((QSizeF(48, 48) * ratio).toSize(), QImage::Format_RGB32);
            picture.setDevicePixelRatio(ratio);
            picture.fill(Qt::white);
            QPainter painter(&picture);
            const QRect rect(place, place, 26, 26);
            painter.fillRect(rect, Qt::black);
            const QRectF ground = inkRect(picture, Qt::black);
            painter.setRenderHint(QPainter::Antialiasing, antialiased);
            paintHairline(painter, rect, edge, Qt::red);
            QCOMPARE(painter.testRenderHint(QPainter::Antialiasing), antialiased);
            painter.end();

            const QImage inside =
                picture.copy(QRectF(ground.topLeft() * ratio, ground.size() * ratio).toRect());
            QVERIFY2(hasHairline(inside, edge, Qt::red),
                     qPrintable(u"edge %1 at %2"_s.arg(edge).arg(place)));
            QCOMPARE(pixelsUnlike(inside, Qt::black), int(ratio) * inside.width());
            QCOMPARE(pixelsUnlike(picture, Qt::white), inside.width() * inside.height());
        }
    }
}

QTEST_MAIN(TestHairline)
#include "tst_hairline.moc"
