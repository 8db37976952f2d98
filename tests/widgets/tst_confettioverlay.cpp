#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "widgets/confettioverlay.h"
#include "widgets/confettiticker.h"
#include "widgets/look.h"
#include "widgets/paintwatch.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kPieces = 110;
constexpr int kLifetime = 130; // ticks

const QList<QColor> kRed { Qt::red };

/// A parent so high that nothing falls out of it, and what lies over it.
struct Scene
{
    explicit Scene(QSize size = { 400, 3000 })
    {
        parent.resize(size);
        overlay = new ConfettiOverlay(&parent);
    }

    QWidget parent;
    ConfettiOverlay *overlay;
};

bool isEmpty(ConfettiOverlay &overlay)
{
    return paintedArea(grabWidget(overlay)) == 0.0;
}

} // namespace

class TestConfettiOverlay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void restsUntilItsFirstBurst();
    void followsItsParentsSize();
    void burst();
    void burstComesToTheFront();
    void burstWithoutColours();
    void burstWithoutColoursInFlight();
    void pieceByPiece();
    void livesFor130Ticks();
    void fades_data();
    void fades();
    void fallsOutEarly();
    void secondBurstReplacesTheFirst();
    void burstAfterTheEnd();
    void endsInRealTime();
    void everyTickRepaints();
    void clicksPassThrough();
    void takesNoFocus();
    void pageBeneathStaysVisible();
    void followsInFlight();
    void goesInFlight();
};

void TestConfettiOverlay::restsUntilItsFirstBurst()
{
    Scene scene({ 680, 474 });
    QVERIFY(scene.overlay->isHidden());
    QCOMPARE(scene.overlay->parentWidget(), &scene.parent);
    QCOMPARE(scene.overlay->geometry(), QRect(0, 0, 680, 474));
    QCOMPARE(scene.overlay->pieceCount(), 0);
    QVERIFY(scene.overlay->testAttribute(Qt::WA_TransparentForMouseEvents));
    QVERIFY(scene.overlay->testAttribute(Qt::WA_TranslucentBackground));
    const ConfettiTicker ticker(*scene.overlay);
    QVERIFY(!ticker.timer().isActive());
    QCOMPARE(ticker.timer().interval(), 16);
    QVERIFY(!ticker.timer().isSingleShot());
    QVERIFY(isEmpty(*scene.overlay));
    scene.parent.show();
    QVERIFY(!scene.overlay->isVisible());
}

void TestConfettiOverlay::followsItsParentsSize()
{
    Scene scene({ 680, 474 });
    scene.parent.show();
    for (const QSize &size : { QSize(300, 200), QSize(900, 700), QSize(680, 474) }) {
        scene.parent.resize(size);
        QCOMPARE(scene.overlay->geometry(), QRect({}, size));
    }
}

void TestConfettiOverlay::burst()
{
    Scene scene;
    ConfettiTicker ticker(*scene.overlay);
    scene.overlay->burst({ 200, 400 }, kRed);
    QCOMPARE(scene.overlay->pieceCount(), kPieces);
    QVERIFY(!scene.overlay->isHidden());
    QVERIFY(ticker.timer().isActive());
    QCOMPARE(ticker.timer().interval(), 16);
    // At first all lie on the origin; the largest measures 9 by 7.
    const QRectF ink = inkRect(grabWidget(*scene.overlay, 2.0), Qt::red);
    QVERIFY(ink.contains(QPointF(200, 400)));
    QVERIFY(QRectF(194, 394, 12, 12).contains(ink));
    ticker.tick(20);
    QVERIFY(inkRect(grabWidget(*scene.overlay, 1.0), Qt::red).width() > 100);
}

void TestConfettiOverlay::burstComesToTheFront()
{
    Scene scene;
    auto *page = new QWidget(&scene.parent);
    auto *other = new QWidget(&scene.parent);
    QCOMPARE(scene.parent.children().last(), other);
    scene.overlay->burst({ 10, 10 }, kRed);
    QCOMPARE(scene.parent.children().last(), scene.overlay);
    page->raise();
    scene.overlay->burst({ 10, 10 }, kRed);
    QCOMPARE(scene.parent.children().last(), scene.overlay);
}

void TestConfettiOverlay::burstWithoutColours()
{
    Scene scene;
    const ConfettiTicker ticker(*scene.overlay);
    auto *page = new QWidget(&scene.parent);
    scene.overlay->burst({ 200, 400 }, {});
    QVERIFY(scene.overlay->isHidden());
    QVERIFY(!ticker.timer().isActive());
    QCOMPARE(scene.overlay->pieceCount(), 0);
    QCOMPARE(scene.parent.children().last(), page);
}

void TestConfettiOverlay::burstWithoutColoursInFlight()
{
    Scene scene;
    ConfettiTicker ticker(*scene.overlay);
    scene.overlay->burst({ 200, 400 }, kRed);
    ticker.tick(60);
    const QImage before = grabWidget(*scene.overlay);
    scene.overlay->burst({ 100, 100 }, {});
    QCOMPARE(grabWidget(*scene.overlay), before);
    ticker.tick(kLifetime - 61);
    QVERIFY(!scene.overlay->isHidden());
    ticker.tick();
    QVERIFY(scene.overlay->isHidden());
}

void TestConfettiOverlay::pieceByPiece()
{
    Scene scene;
    ConfettiTicker ticker(*scene.overlay);
    const QList<QColor> colours { Qt::red, Qt::green, Qt::blue };
    scene.overlay->burst({ 200, 400 }, colours);
    ticker.tick(30);
    QCOMPARE(scene.overlay->pieceCount(), kPieces);
    const QImage picture = grabWidget(*scene.overlay);
    int pixels[3] {};
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qAlpha(picture.pixel(x, y)) == 0)
                continue;
            const QColor here = picture.pixelColor(x, y);
            for (int i = 0; i < 3; ++i)
                pixels[i] += difference(here, faded(colours[i], 100.0 / 130)).isEmpty() ? 1 : 0;
        }
    }
    // Each takes a third of the pieces, of some twenty inner pixels.
    for (int count : pixels)
        QVERIFY2(count > 100, qPrintable(QString::number(count)));
}

void TestConfettiOverlay::livesFor130Ticks()
{
    Scene scene;
    ConfettiTicker ticker(*scene.overlay);
    scene.overlay->burst({ 200, 400 }, kRed);
    ticker.tick(kLifetime - 1);
    QVERIFY(!scene.overlay->isHidden());
    QVERIFY(ticker.timer().isActive());
    QCOMPARE(scene.overlay->pieceCount(), kPieces);
    ticker.tick();
    QVERIFY(scene.overlay->isHidden());
    QVERIFY(!ticker.timer().isActive());
    QCOMPARE(scene.overlay->pieceCount(), 0);
    QVERIFY(isEmpty(*scene.overlay));
}

void TestConfettiOverlay::fades_data()
{
    QTest::addColumn<int>("age");
    for (int age : { 0, 13, 65, 104, 129 })
        QTest::addRow("after %d ticks", age) << age;
}

void TestConfettiOverlay::fades()
{
    QFETCH(const int, age);
    Scene scene;
    ConfettiTicker ticker(*scene.overlay);
    scene.overlay->burst({ 200, 400 }, kRed);
    ticker.tick(age);
    // Of most pixels, but for edges and where pieces lie on one another.
    const QImage picture = grabWidget(*scene.overlay, 2.0);
    const int expected = qRound(255.0 * (1.0 - double(age) / kLifetime));
    int here = 0;
    int all = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const int alpha = qAlpha(picture.pixel(x, y));
            all += alpha > 0 ? 1 : 0;
            here += alpha > 0 && std::abs(alpha - expected) <= 1 ? 1 : 0;
        }
    }
    QVERIFY2(here > all / 2, qPrintable(u"%1 of %2"_s.arg(here).arg(all)));
}

// Every piece is still far below the floor after its first move, which is at most 14.5 upwards.
void TestConfettiOverlay::fallsOutEarly()
{
    Scene scene({ 400, 300 });
    ConfettiTicker ticker(*scene.overlay);
    scene.overlay->burst({ 200, 300 + 40 + 14.6 }, kRed);
    QVERIFY(!scene.overlay->isHidden());
    ticker.tick();
    QVERIFY(scene.overlay->isHidden());
    QVERIFY(!ticker.timer().isActive());
    QCOMPARE(scene.overlay->pieceCount(), 0);
}

void TestConfettiOverlay::secondBurstReplacesTheFirst()
{
    Scene scene;
    ConfettiTicker ticker(*scene.overlay);
    scene.overlay->burst({ 200, 400 }, kRed);
    ticker.tick(60);
    QVERIFY(!inkRect(grabWidget(*scene.overlay), faded(Qt::red, 70.0 / 130)).isEmpty());
    scene.overlay->burst({ 100, 2000 }, { Qt::blue });
    QCOMPARE(scene.overlay->pieceCount(), kPieces);
    const QRectF ink = inkRect(grabWidget(*scene.overlay));
    QVERIFY(QRectF(94, 1994, 12, 12).contains(ink));
    QCOMPARE(inkRect(grabWidget(*scene.overlay), Qt::blue), ink);
    ticker.tick(kLifetime - 1);
    QVERIFY(!scene.overlay->isHidden());
    ticker.tick();
    QVERIFY(scene.overlay->isHidden());
}

void TestConfettiOverlay::burstAfterTheEnd()
{
    Scene scene;
    ConfettiTicker ticker(*scene.overlay);
    for (int round = 0; round < 2; ++round) {
        scene.overlay->burst({ 200, 400 }, kRed);
        QVERIFY(!scene.overlay->isHidden());
        QCOMPARE(scene.overlay->pieceCount(), kPieces);
        ticker.tick(kLifetime);
        QVERIFY(scene.overlay->isHidden());
    }
}

void TestConfettiOverlay::endsInRealTime()
{
    Scene scene({ 300, 200 });
    scene.parent.show();
    scene.overlay->burst({ 150, 100 }, kRed);
    QVERIFY(scene.overlay->isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(scene.overlay->isHidden(), 20000);
    QCOMPARE(scene.overlay->pieceCount(), 0);
}

void TestConfettiOverlay::everyTickRepaints()
{
    Scene scene({ 300, 200 });
    scene.parent.show();
    ConfettiTicker ticker(*scene.overlay);
    scene.overlay->burst({ 150, 100 }, kRed);
    PaintWatch watch(*scene.overlay);
    for (int i = 0; i < 5; ++i) {
        ticker.tick();
        QVERIFY(watch.seesRepaint());
    }
}

void TestConfettiOverlay::clicksPassThrough()
{
    Scene scene({ 300, 200 });
    QPushButton button(u"Page"_s, &scene.parent);
    button.setGeometry(100, 50, 100, 100);
    scene.parent.show();
    QVERIFY(QTest::qWaitForWindowExposed(&scene.parent));
    const ConfettiTicker ticker(*scene.overlay);
    scene.overlay->burst({ 150, 100 }, kRed);
    QVERIFY(scene.overlay->isVisible());
    const QSignalSpy clicked(&button, &QAbstractButton::clicked);
    QTest::mouseClick(scene.parent.windowHandle(), Qt::LeftButton, {}, QPoint(150, 100));
    QTRY_COMPARE_WITH_TIMEOUT(clicked.count(), 1, 10000);
    QCOMPARE(scene.parent.childAt(150, 100), &button);
}

void TestConfettiOverlay::takesNoFocus()
{
    Scene scene({ 300, 200 });
    QPushButton button(u"Page"_s, &scene.parent);
    scene.parent.show();
    scene.parent.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&scene.parent));
    button.setFocus();
    const ConfettiTicker ticker(*scene.overlay);
    scene.overlay->burst({ 150, 100 }, kRed);
    QVERIFY(button.hasFocus());
    QCOMPARE(scene.overlay->focusPolicy(), Qt::NoFocus);
}

void TestConfettiOverlay::pageBeneathStaysVisible()
{
    Scene scene({ 300, 200 });
    QWidget page(&scene.parent);
    page.setGeometry(0, 0, 300, 200);
    page.setAutoFillBackground(true);
    page.setPalette(QPalette(Qt::yellow));
    const ConfettiTicker ticker(*scene.overlay);
    scene.overlay->burst({ 150, 100 }, kRed);
    const QImage picture = grabWidget(scene.parent);
    QCOMPARE(difference(colourAt(picture, { 10, 10 }), Qt::yellow), QString());
    QCOMPARE(difference(colourAt(picture, { 290, 190 }), Qt::yellow), QString());
    QCOMPARE(difference(colourAt(picture, { 150, 100 }), Qt::red), QString());
}

void TestConfettiOverlay::followsInFlight()
{
    Scene scene({ 300, 200 });
    scene.parent.show();
    ConfettiTicker ticker(*scene.overlay);
    scene.overlay->burst({ 150, 100 }, kRed);
    ticker.tick(5);
    scene.parent.resize(500, 3000);
    QCOMPARE(scene.overlay->geometry(), QRect(0, 0, 500, 3000));
    QCOMPARE(scene.overlay->pieceCount(), kPieces);
    ticker.tick(kLifetime - 6); // nothing falls out of it any more
    QVERIFY(scene.overlay->isVisible());
    ticker.tick();
    QVERIFY(scene.overlay->isHidden());
}

void TestConfettiOverlay::goesInFlight()
{
    QWidget parent;
    parent.resize(300, 200);
    parent.show();
    auto *overlay = new ConfettiOverlay(&parent);
    overlay->burst({ 150, 100 }, kRed);
    delete overlay;
    parent.resize(400, 300);
    QCoreApplication::processEvents();
    QVERIFY(parent.children().isEmpty());
}

QTEST_MAIN(TestConfettiOverlay)
#include "tst_confettioverlay.moc"
