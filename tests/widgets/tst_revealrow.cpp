#include "pages/lightthemetest.h"
#include "pages/manualclock.h"
#include "pages/timerwatch.h"
#include "support/grab.h"
#include "widgets/course.h"
#include "widgets/look.h"
#include "widgets/revealrow.h"

#include <QGraphicsOpacityEffect>
#include <QPainter>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int kDuration = 300;
constexpr int kSlide = 6;

/// Paints itself red on green, but for a margin of 8 above and below.
class Row : public RevealRow
{
public:
    explicit Row(int slide = kSlide) : RevealRow(slide, u"A row"_s) { resize(100, 40); }

    int paints = 0;

protected:
    void paintRow(QPainter &painter) override
    {
        ++paints;
        for (Qt::GlobalColor colour : { Qt::green, Qt::red })
            painter.fillRect(QRect(0, 8, 100, 24), colour);
    }
};

/// Paints a disc, a text of its own size and colour and a line at its bottom.
class DiscAndText : public RevealRow
{
public:
    explicit DiscAndText(QWidget *parent) : RevealRow(kSlide, u"A row"_s, parent)
    {
        setGeometry(3, 5, 110, 22);
        QFont large = font();
        large.setPixelSize(15);
        setFont(large);
        QPalette ink;
        ink.setColor(QPalette::WindowText, Qt::darkGreen);
        setPalette(ink);
    }

protected:
    void paintRow(QPainter &painter) override
    {
        painter.fillRect(QRect(0, height() - 1, width(), 1), Qt::blue);
        painter.setBrush(Qt::red);
        painter.drawEllipse(QRectF(0.5, 3.0, 16.0, 16.0));
        painter.drawText(rect().adjusted(20, 0, 0, 0), Qt::AlignVCenter, u"Preparing files"_s);
    }
};

/// An opaque yellow ground.
class Page : public QWidget
{
public:
    Page()
    {
        resize(118, 50);
        setAutoFillBackground(true);
        setPalette(QPalette(Qt::yellow));
    }
};

QImage atHalfOpacity(const QImage &picture)
{
    QImage faint = picture;
    faint.fill(Qt::transparent);
    QPainter painter(&faint);
    painter.setOpacity(0.5);
    painter.drawImage(0, 0, picture);
    return faint;
}

Course course(double from, double to)
{
    return { from, to, kDuration, QEasingCurve::OutCubic };
}

} // namespace

class TestRevealRow : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void comesAndGoes();
    void resetEndsTheAnimation();
    void resetForgetsTheDelay();
    void isNotPaintedWhileItIsHidden();
    void fadesAndSlides();
    void comesToRestWithoutAJump();
    void fadesOnAFadingPage();
};

void TestRevealRow::comesAndGoes()
{
    ManualClock clock;
    Row row;
    QVERIFY(!row.isRevealed());
    row.setRevealed(true);
    QVERIFY(row.isRevealed());
    QCOMPARE(departure(clock, course(0.0, 1.0), [&] { return row.reveal(); }), QString());
    row.setRevealed(false);
    QVERIFY(!row.isRevealed());
    QCOMPARE(departure(clock, course(1.0, 0.0), [&] { return row.reveal(); }), QString());
    row.setRevealed(true);
    clock.pass(60);
    row.setRevealed(true); // does not start over from the present value
    clock.pass(90);
    const double turn = row.reveal();
    QVERIFY(std::abs(turn - course(0.0, 1.0).at(150)) < 0.02);
    row.setRevealed(false);
    QCOMPARE(departure(clock, course(turn, 0.0), [&] { return row.reveal(); }), QString());
}

void TestRevealRow::resetEndsTheAnimation()
{
    ManualClock clock;
    Row row;
    for (int time : { kDuration / 2, kDuration }) { // on the way and at rest
        row.setRevealed(true);
        clock.pass(time);
        row.resetReveal();
        QCOMPARE(row.reveal(), 0.0);
        QVERIFY(!row.isRevealed());
        clock.pass(kDuration);
        QCOMPARE(row.reveal(), 0.0);
    }
}

void TestRevealRow::resetForgetsTheDelay()
{
    TimerWatch timers;
    Row row;
    Row later;
    row.revealAfter(20ms);
    later.revealAfter(10ms);
    later.revealAfter(60ms); // which counts
    row.resetReveal();
    QTRY_VERIFY_WITH_TIMEOUT(later.isRevealed(), 10000);
    QVERIFY(!row.isRevealed());
    QCOMPARE(timers.shots(), QList<int>({ 60 }));
}

void TestRevealRow::isNotPaintedWhileItIsHidden()
{
    Row row;
    row.setReveal(0.001);
    (void)grabWidget(row);
    QCOMPARE(row.paints, 0);
    row.setReveal(0.0011);
    (void)grabWidget(row);
    QCOMPARE(row.paints, 1);
}

// As one layer: what lies on another does not show it through while both fade.
void TestRevealRow::fadesAndSlides()
{
    const QList<std::pair<double, int>> scenes { { 0.25, 8 }, { 0.5, 12 }, { 0.5, 4 }, { 1.0, 8 } };
    for (const auto &[reveal, slide] : scenes) {
        Row row(slide);
        row.setReveal(reveal);
        const double top = 8.0 + (1.0 - reveal) * slide;
        for (double ratio : { 1.0, 1.5, 2.0 }) {
            const QImage picture = grabWidget(row, ratio);
            QCOMPARE(differenceAt(picture, { { 50, top + 0.1 }, { 50, top + 23.5 } },
                                  faded(Qt::red, reveal)),
                     QString());
            QCOMPARE(colourAt(picture, { 50, top - 0.9 }).alpha(), 0);
            QCOMPARE(colourAt(picture, { 50, top + 24.1 }).alpha(), 0);
            QVERIFY(std::abs(paintedArea(picture) - 2400 * reveal) < 12);
        }
    }
}

// On its way it is painted in another manner than at rest, which must not show: neither in the
// edges of shapes nor in letters, wherever between two device pixels the row begins.
void TestRevealRow::comesToRestWithoutAJump()
{
    Page page;
    DiscAndText row(&page);
    for (double ratio : { 1.0, 1.25, 1.5, 1.75, 2.0 }) {
        row.setReveal(0.9999);
        const QImage nearly = grabWidget(page, ratio);
        row.setReveal(1.0);
        const QImage rest = grabWidget(page, ratio);
        QVERIFY(pixelsUnlike(rest, Qt::yellow) > 300);
        QCOMPARE(difference(nearly, rest, 6), QString());
    }
}

// While pages change, the row is painted through the effect that its page fades with. (At a broken
// ratio the effect puts whatever it paints on whole pixels.)
void TestRevealRow::fadesOnAFadingPage()
{
    QWidget window;
    window.resize(120, 60);
    Page page;
    page.setParent(&window);
    page.move(2, 1);
    DiscAndText row(&page);
    for (double ratio : { 1.0, 2.0 }) {
        for (double reveal : { 0.5, 1.0 }) {
            row.setReveal(reveal);
            page.setGraphicsEffect(nullptr);
            const QImage whole = grabWidget(window, ratio);
            auto *effect = new QGraphicsOpacityEffect(&page);
            effect->setOpacity(0.5);
            page.setGraphicsEffect(effect);
            QCOMPARE(difference(grabWidget(window, ratio), atHalfOpacity(whole), 6), QString());
        }
    }
}

QTEST_MAIN(TestRevealRow)
#include "tst_revealrow.moc"
