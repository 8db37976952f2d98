#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/gifbadge.h"
#include "widgets/look.h"

#include <QPainter>
#include <QTemporaryDir>

#include <array>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kSide = 64;
constexpr QPointF kCentre(32, 32);
constexpr std::array kRatios { 1.0, 1.25, 1.5, 2.0 };

QColor line()
{
    return themedColor(u"@INS_LINE"_s);
}

QPointF direction(double degrees)
{
    const double angle = degrees * M_PI / 180.0;
    return { std::cos(angle), std::sin(angle) };
}

} // namespace

class TestGifBadgePainting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void bareDisc_data();
    void bareDisc();
    void popThreshold();
    void popping_data();
    void popping();
    void ringIsWholeFromTheStart();
    void overshootStaysInTheWidget();
    void wideFrameIsCut();
    void highFrameIsCut();
    void smallFrameIsEnlarged();
    void frameIsCutByTheDisc();
    void ringLiesOnTheFrame();
    void whiteMeltsIntoTheDisc();
    void frameIsMultiplied();
    void poppingFrame();
    void frameIsScaledSmoothly();
    void frameIsSharp();
    void newRatioAndPlaceAreDrawnAnew();
    void comesToRestWithoutAJump();

private:
    [[nodiscard]] QImage picture(const QImage &frame, double pop = 1.0, double ratio = 2.0);
    [[nodiscard]] QString fileOf(const QImage &frame);

    QTemporaryDir m_folder;
    int m_files = 0;
};

void TestGifBadgePainting::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

QString TestGifBadgePainting::fileOf(const QImage &frame)
{
    if (frame.isNull())
        return u":/assets/nothing.gif"_s;
    const QString file = m_folder.filePath(u"%1.png"_s.arg(++m_files));
    return frame.save(file) ? file : QString();
}

/// What a badge with that frame looks like; with none it is that of a picture that cannot be read.
QImage TestGifBadgePainting::picture(const QImage &frame, double pop, double ratio)
{
    GifBadge badge(fileOf(frame), kSide);
    badge.resize(kSide, kSide);
    badge.setPopProgress(pop);
    return grabWidget(badge, ratio);
}

void TestGifBadgePainting::bareDisc_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<double>("ratio");
    for (bool dark : { false, true }) {
        for (double ratio : kRatios)
            QTest::addRow("%s, ratio %g", dark ? "dark" : "light", ratio) << dark << ratio;
    }
}

void TestGifBadgePainting::bareDisc()
{
    QFETCH(const bool, dark);
    QFETCH(const double, ratio);
    ThemeManager::instance().setDarkMode(dark);
    const QImage image = picture({}, 1.0, ratio);
    QVERIFY(std::abs(paintedArea(image) - M_PI * 32 * 32) < 40.0 / ratio);
    for (double angle : { 10.0, 45.0, 100.0, 225.0, 300.0 }) {
        for (double distance : { 0.0, 15.0, 29.5 }) {
            const QPointF point = kCentre + direction(angle) * distance;
            QCOMPARE(difference(colourAt(image, point), Qt::white), QString());
        }
    }
    for (double angle : { 45.0, 135.0, 225.0, 315.0 })
        QCOMPARE(colourAt(image, kCentre + direction(angle) * 34.0).alpha(), 0);
    // At the sides the hairline lies on whole pixels.
    for (const QPointF &point : { QPointF(0.1, 32), QPointF(63.9, 32), QPointF(32, 0.1) })
        QCOMPARE(difference(colourAt(image, point), line(), ratio == std::floor(ratio) ? 12 : 40),
                 QString());
}

void TestGifBadgePainting::popThreshold()
{
    for (double pop : { 0.0, 0.001, -0.1 })
        QCOMPARE(pixelsUnlike(picture({}, pop), Qt::transparent), 0);
    const QImage image = picture({}, 0.0011);
    QCOMPARE(difference(colourAt(image, { 0.5, 32 }), line(), 6), QString());
    QCOMPARE(colourAt(image, kCentre).alpha(), 0);
}

void TestGifBadgePainting::popping_data()
{
    QTest::addColumn<double>("pop");
    for (double pop : { 0.25, 0.5, 0.9 })
        QTest::addRow("%g", pop) << pop;
}

void TestGifBadgePainting::popping()
{
    QFETCH(const double, pop);
    const double radius = 32.0 * pop;
    const QColor disc = faded(Qt::white, pop);
    for (double ratio : kRatios) {
        const QImage image = picture({}, pop, ratio);
        QCOMPARE(difference(colourAt(image, kCentre), disc), QString());
        for (double angle : { 10.0, 45.0, 100.0, 225.0, 300.0 }) {
            const QPointF way = direction(angle);
            QCOMPARE(difference(colourAt(image, kCentre + way * (radius - 1.3)), disc), QString());
            if (radius + 1.3 < 30.0)
                QCOMPARE(colourAt(image, kCentre + way * (radius + 1.3)).alpha(), 0);
        }
    }
}

void TestGifBadgePainting::ringIsWholeFromTheStart()
{
    // So fine that a pixel, up to 0.09 px from corner to corner, can lie within a tenth of the
    // edge.
    const QImage whole = picture({}, 1.0, 16.0);
    for (double pop : { 0.0011, 0.3, 0.6 }) {
        const QImage image = picture({}, pop, 16.0);
        for (double angle : { 0.0, 20.0, 45.0, 110.0, 200.0, 290.0 }) {
            for (double distance : { 31.1, 31.5, 31.85 }) {
                const QPointF point = kCentre + direction(angle) * distance;
                QCOMPARE(difference(colourAt(image, point), line(), 12), QString());
                QCOMPARE(difference(colourAt(whole, point), line(), 12), QString());
            }
            // Its width is one.
            QCOMPARE(colourAt(image, kCentre + direction(angle) * 30.9).alpha(), 0);
            QCOMPARE(difference(colourAt(whole, kCentre + direction(angle) * 30.9), Qt::white),
                     QString());
        }
    }
}

void TestGifBadgePainting::overshootStaysInTheWidget()
{
    const QImage image = picture({}, 1.1);
    QCOMPARE(difference(colourAt(image, kCentre), Qt::white), QString());
    QCOMPARE(difference(colourAt(image, kCentre + direction(45) * 34.0), Qt::white), QString());
    QCOMPARE(difference(colourAt(image, kCentre + direction(45) * 31.5), line(), 12), QString());
    QCOMPARE(colourAt(image, kCentre + direction(45) * 37.0).alpha(), 0);
    QCOMPARE(image.size(), QSize(2 * kSide, 2 * kSide));
}

// Four stripes, of which the badge has room for the two in the middle.
void TestGifBadgePainting::wideFrameIsCut()
{
    QImage frame(80, 40, QImage::Format_RGB32);
    QPainter painter(&frame);
    const std::array colours { Qt::red, Qt::green, Qt::blue, Qt::magenta };
    for (int i = 0; i < 4; ++i)
        painter.fillRect(20 * i, 0, 20, 40, colours[size_t(i)]);
    painter.end();
    for (double ratio : kRatios) {
        const QImage image = picture(frame, 1.0, ratio);
        for (double y : { 8.0, 32.0, 56.0 }) {
            QCOMPARE(difference(colourAt(image, { 20, y }), Qt::green, 4), QString());
            QCOMPARE(difference(colourAt(image, { 29, y }), Qt::green, 4), QString());
            QCOMPARE(difference(colourAt(image, { 35, y }), Qt::blue, 4), QString());
            QCOMPARE(difference(colourAt(image, { 44, y }), Qt::blue, 4), QString());
        }
        QCOMPARE(difference(colourAt(image, { 4, 32 }), Qt::green, 4), QString());
        QCOMPARE(difference(colourAt(image, { 60, 32 }), Qt::blue, 4), QString());
    }
}

void TestGifBadgePainting::highFrameIsCut()
{
    QImage frame(40, 80, QImage::Format_RGB32);
    QPainter painter(&frame);
    const std::array colours { Qt::red, Qt::green, Qt::blue, Qt::magenta };
    for (int i = 0; i < 4; ++i)
        painter.fillRect(0, 20 * i, 40, 20, colours[size_t(i)]);
    painter.end();
    const QImage image = picture(frame);
    QCOMPARE(difference(colourAt(image, { 32, 4 }), Qt::green, 4), QString());
    QCOMPARE(difference(colourAt(image, { 32, 29 }), Qt::green, 4), QString());
    QCOMPARE(difference(colourAt(image, { 32, 35 }), Qt::blue, 4), QString());
    QCOMPARE(difference(colourAt(image, { 4, 35 }), Qt::blue, 4), QString());
    QCOMPARE(difference(colourAt(image, { 32, 60 }), Qt::blue, 4), QString());
}

void TestGifBadgePainting::smallFrameIsEnlarged()
{
    QImage frame(8, 8, QImage::Format_RGB32);
    frame.fill(Qt::darkCyan);
    const QImage image = picture(frame);
    for (double angle : { 0.0, 90.0, 180.0, 270.0, 45.0 })
        QCOMPARE(difference(colourAt(image, kCentre + direction(angle) * 29.0), Qt::darkCyan),
                 QString());
}

void TestGifBadgePainting::frameIsCutByTheDisc()
{
    QImage frame(kSide, kSide, QImage::Format_RGB32);
    frame.fill(Qt::black);
    for (double ratio : kRatios) {
        const QImage image = picture(frame, 1.0, ratio);
        QVERIFY(std::abs(paintedArea(image) - M_PI * 32 * 32) < 80.0 / ratio);
        QCOMPARE(difference(colourAt(image, kCentre + direction(45) * 29.0), Qt::black), QString());
        QCOMPARE(colourAt(image, kCentre + direction(45) * 34.0).alpha(), 0);
    }
}

void TestGifBadgePainting::ringLiesOnTheFrame()
{
    QImage frame(kSide, kSide, QImage::Format_RGB32);
    frame.fill(Qt::black);
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        QCOMPARE(difference(colourAt(picture(frame), { 0.25, 32 }), line(), 6), QString());
        QCOMPARE(difference(colourAt(picture(frame, 1.0, 8.0), { 0.5, 32 }), line()), QString());
    }
}

void TestGifBadgePainting::whiteMeltsIntoTheDisc()
{
    const QRect inDisc(24, 24, 80, 80);
    const QImage bare = picture({}).copy(inDisc);
    for (const QColor &colour : { QColor(Qt::white), QColor(Qt::transparent) }) {
        QImage frame(kSide, kSide, QImage::Format_ARGB32);
        frame.fill(colour);
        QCOMPARE(picture(frame).copy(inDisc), bare);
    }
}

// On an opaque ground that shows through the half-popped disc, so that it matters.
void TestGifBadgePainting::frameIsMultiplied()
{
    QImage frame(kSide, kSide, QImage::Format_RGB32);
    frame.fill(Qt::red);
    QWidget parent;
    parent.resize(kSide, kSide);
    auto *ground = new QWidget(&parent);
    ground->setAutoFillBackground(true);
    ground->setPalette(QPalette(Qt::blue));
    ground->resize(kSide, kSide);
    auto *badge = new GifBadge(fileOf(frame), kSide, ground);
    badge->resize(kSide, kSide);
    badge->setPopProgress(0.5);
    const QColor disc = blended(Qt::white, 0.5, Qt::blue);
    const QColor product(disc.red(), 0, 0);
    QCOMPARE(difference(colourAt(grabWidget(parent), kCentre), blended(product, 0.5, disc), 3),
             QString());
    QCOMPARE(difference(colourAt(grabWidget(parent), { 32, 8 }), Qt::blue), QString());
}

void TestGifBadgePainting::poppingFrame()
{
    QImage frame(80, 40, QImage::Format_RGB32);
    frame.fill(Qt::green);
    QPainter(&frame).fillRect(40, 0, 40, 40, Qt::blue);
    const QImage image = picture(frame, 0.5);
    // It shrinks with the disc: at half the size there is nothing of it beyond a radius of 16.
    QVERIFY(colourAt(image, { 20, 32 }).green() > colourAt(image, { 20, 32 }).blue() + 100);
    QVERIFY(colourAt(image, { 44, 32 }).blue() > colourAt(image, { 44, 32 }).green() + 100);
    QCOMPARE(colourAt(image, { 14, 32 }).alpha(), 0);
    QCOMPARE(colourAt(image, { 50, 32 }).alpha(), 0);
}

// A checkerboard of single pixels at half its size is grey all over, unless pixels are left out.
void TestGifBadgePainting::frameIsScaledSmoothly()
{
    QImage board(2 * kSide, 2 * kSide, QImage::Format_RGB32);
    for (int y = 0; y < board.height(); ++y) {
        for (int x = 0; x < board.width(); ++x)
            board.setPixelColor(x, y, (x + y) % 2 ? Qt::white : Qt::black);
    }
    const QImage image = picture(board, 1.0, 1.0);
    for (const QPointF &point :
         { QPointF(32, 32), QPointF(33, 32), QPointF(20, 41), QPointF(21, 50) })
        QCOMPARE(difference(colourAt(image, point), QColor(127, 127, 127), 16), QString());
}

// A frame of just as many pixels as there are on the screen needs no scaling, and gets none.
void TestGifBadgePainting::frameIsSharp()
{
    for (double ratio : kRatios) {
        const int pixels = int(kSide * ratio);
        QImage board(pixels, pixels, QImage::Format_RGB32);
        for (int y = 0; y < pixels; ++y) {
            for (int x = 0; x < pixels; ++x)
                board.setPixelColor(x, y, (x / 2 + y / 2) % 2 ? Qt::white : Qt::black);
        }
        const QImage image = picture(board, 1.0, ratio);
        for (int y = pixels / 4; y < 3 * pixels / 4; ++y) {
            for (int x = pixels / 4; x < 3 * pixels / 4; ++x)
                QCOMPARE(difference(image.pixelColor(x, y), board.pixelColor(x, y)), QString());
        }
    }
}

// At rest it shows pictures of itself, which must be those of the present ratio and place.
void TestGifBadgePainting::newRatioAndPlaceAreDrawnAnew()
{
    QImage board(2 * kSide, 2 * kSide, QImage::Format_RGB32);
    for (int y = 0; y < board.height(); ++y) {
        for (int x = 0; x < board.width(); ++x)
            board.setPixelColor(x, y, (x / 8 + y / 8) % 2 ? Qt::red : Qt::black);
    }
    const QString file = fileOf(board);
    QWidget page;
    page.resize(70, 70);
    auto *badge = new GifBadge(file, kSide, &page);
    for (double ratio : kRatios) {
        for (const QPoint &place : { QPoint(1, 1), QPoint(2, 1), QPoint(1, 3) }) {
            badge->setGeometry(QRect(place, badge->sizeHint()));
            QWidget freshPage;
            freshPage.resize(page.size());
            (new GifBadge(file, kSide, &freshPage))->setGeometry(badge->geometry());
            QVERIFY(grabWidget(page, ratio) == grabWidget(freshPage, ratio));
        }
    }
}

// At rest it is painted in another manner than while it pops, which must not show at the edge.
void TestGifBadgePainting::comesToRestWithoutAJump()
{
    QImage frame(3 * kSide, 3 * kSide, QImage::Format_RGB32);
    frame.fill(Qt::white);
    QWidget page;
    page.resize(70, 70);
    page.setAutoFillBackground(true);
    page.setPalette(QPalette(Qt::black));
    auto *badge = new GifBadge(fileOf(frame), kSide, &page);
    badge->setGeometry(3, 3, kSide, kSide);
    for (double ratio : kRatios) {
        badge->setPopProgress(0.99999);
        const QImage nearly = grabWidget(page, ratio);
        badge->setPopProgress(1.0);
        QCOMPARE(difference(nearly, grabWidget(page, ratio), 16), QString());
    }
}

QTEST_MAIN(TestGifBadgePainting)
#include "tst_gifbadge_painting.moc"
