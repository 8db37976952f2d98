#include "pages/lightthemetest.h"
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

/// Black and white squares of `cell` pixels.
QImage checkerboard(int side, int cell)
{
    QImage board(side, side, QImage::Format_RGB32);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            board.setPixelColor(x, y, (x / cell + y / cell) % 2 ? Qt::white : Qt::black);
    }
    return board;
}

} // namespace

class TestGifBadgePainting : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void bareDisc();
    void ringIsWholeFromTheStart();
    void overshootStaysInTheWidget();
    void frameThatIsNoSquareIsCut();
    void frameIsCutByTheDiscBelowTheRing();
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

void TestGifBadgePainting::bareDisc()
{
    for (double pop : { 0.25, 0.5, 0.9, 1.0 }) {
        for (double ratio : kRatios) {
            const QImage image = picture({}, pop, ratio);
            if (pop == 1.0)
                QVERIFY(std::abs(paintedArea(image) - M_PI * 32 * 32) < 40.0 / ratio);
            for (double angle : { 10.0, 45.0, 225.0 }) {
                const QPointF edge = direction(angle) * 32.0 * pop;
                const QPointF step = direction(angle) * (pop == 1.0 ? 2.5 : 1.3);
                QCOMPARE(
                    differenceAt(image, { kCentre, kCentre + edge - step }, faded(Qt::white, pop)),
                    QString());
                if (32.0 * pop + 1.3 < 30.0)
                    QCOMPARE(colourAt(image, kCentre + edge + step).alpha(), 0);
            }
        }
    }
}

void TestGifBadgePainting::ringIsWholeFromTheStart()
{
    for (double pop : { 0.0, 0.001, -0.1 })
        QCOMPARE(pixelsUnlike(picture({}, pop), Qt::transparent), 0);
    // So fine that a pixel, up to 0.09 px from corner to corner, can lie within a tenth of the
    // edge.
    for (double pop : { 0.0011, 0.3, 1.0 }) {
        ThemeManager::instance().setDarkMode(pop == 0.3);
        const QImage image = picture({}, pop, 16.0);
        for (double angle : { 0.0, 20.0, 45.0, 110.0, 200.0, 290.0 }) {
            const QPointF way = direction(angle);
            QCOMPARE(
                differenceAt(image,
                             { kCentre + way * 31.1, kCentre + way * 31.5, kCentre + way * 31.85 },
                             line(), 12),
                QString());
            // Its width is one.
            QCOMPARE(differenceAt(image, { kCentre + way * 30.9 },
                                  pop < 1.0 ? Qt::transparent : Qt::white),
                     QString());
        }
    }
}

void TestGifBadgePainting::overshootStaysInTheWidget()
{
    const QImage image = picture({}, 1.1);
    QCOMPARE(differenceAt(image, { kCentre, kCentre + direction(45) * 34.0 }, Qt::white),
             QString());
    QCOMPARE(colourAt(image, kCentre + direction(45) * 37.0).alpha(), 0);
}

// Four stripes, side by side or one below the other, of which the badge has room for the two in the
// middle.
void TestGifBadgePainting::frameThatIsNoSquareIsCut()
{
    QImage frame(80, 40, QImage::Format_RGB32);
    const std::array colours { Qt::red, Qt::green, Qt::blue, Qt::magenta };
    QPainter painter(&frame);
    for (int i = 0; i < 4; ++i)
        painter.fillRect(20 * i, 0, 20, 40, colours[size_t(i)]);
    painter.end();
    const QList<QPointF> green { { 4, 32 }, { 20, 8 }, { 29, 32 }, { 29, 56 } };
    const QList<QPointF> blue { { 60, 32 }, { 44, 8 }, { 35, 32 }, { 35, 56 } };
    for (double ratio : kRatios) {
        const QImage wide = picture(frame, 1.0, ratio);
        QCOMPARE(differenceAt(wide, green, Qt::green, 4), QString());
        QCOMPARE(differenceAt(wide, blue, Qt::blue, 4), QString());
    }
    const QImage high = picture(frame.transformed(QTransform(0, 1, 1, 0, 0, 0)));
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(differenceAt(high, { green[i].transposed() }, Qt::green, 4), QString());
        QCOMPARE(differenceAt(high, { blue[i].transposed() }, Qt::blue, 4), QString());
    }
}

void TestGifBadgePainting::frameIsCutByTheDiscBelowTheRing()
{
    QImage frame(kSide, kSide, QImage::Format_RGB32);
    frame.fill(Qt::black);
    for (double ratio : kRatios) {
        const QImage image = picture(frame, 1.0, ratio);
        QVERIFY(std::abs(paintedArea(image) - M_PI * 32 * 32) < 80.0 / ratio);
        QCOMPARE(differenceAt(image, { kCentre + direction(45) * 29.0 }, Qt::black), QString());
        QCOMPARE(colourAt(image, kCentre + direction(45) * 34.0).alpha(), 0);
    }
    QCOMPARE(differenceAt(picture(frame, 1.0, 8.0), { { 0.5, 32 } }, line()), QString());
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
    const QImage image = grabWidget(parent);
    QCOMPARE(differenceAt(image, { kCentre }, blended(product, 0.5, disc), 3), QString());
    QCOMPARE(differenceAt(image, { { 32, 8 } }, Qt::blue), QString());
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
    const QImage image = picture(checkerboard(2 * kSide, 1), 1.0, 1.0);
    QCOMPARE(differenceAt(image, { { 32, 32 }, { 33, 32 }, { 20, 41 }, { 21, 50 } },
                          QColor(127, 127, 127), 16),
             QString());
}

// A frame of just as many pixels as there are on the screen needs no scaling, and gets none.
void TestGifBadgePainting::frameIsSharp()
{
    for (double ratio : kRatios) {
        const int pixels = int(kSide * ratio);
        const QImage board = checkerboard(pixels, 2);
        const QRect middle(pixels / 4, pixels / 4, pixels / 2, pixels / 2);
        QCOMPARE(difference(picture(board, 1.0, ratio).copy(middle), board.copy(middle)),
                 QString());
    }
}

// At rest it shows pictures of itself, which must be those of the present ratio and place.
void TestGifBadgePainting::newRatioAndPlaceAreDrawnAnew()
{
    const QString file = fileOf(checkerboard(2 * kSide, 8));
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
