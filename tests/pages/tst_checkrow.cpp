#include "app/applicationfonts.h"
#include "pages/checkrow.h"
#include "pages/manualclock.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "support/drawing.h"
#include "support/grab.h"
#include "theme/themed.h"

#include <QAccessible>
#include <QEasingCurve>
#include <QTest>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

using CheckRow = SystemCheckPage::CheckRow;

constexpr int kWidth = 440;
/// So many device pixels per pixel that letters have a solid inside.
constexpr double kMagnified = 8.0;

const CheckResult kGood { u"Memory"_s, u"16 GB"_s, true };
const CheckResult kBad { u"Memory"_s, u"3.9 GB — 4 GB recommended"_s, false };

/// Columns of `picture` from `from` on that hold any ink above the hairline, in pixels.
struct Ink
{
    double left = -1.0;
    double right = -1.0;
};

Ink inkOf(const QImage &picture, double from, double to)
{
    const double ratio = picture.devicePixelRatio();
    Ink ink;
    for (int x = int(from * ratio); x < int(to * ratio); ++x) {
        for (int y = 0; y < picture.height() - 2 * ratio; ++y) {
            if (picture.pixelColor(x, y).alpha() < 40)
                continue;
            if (ink.left < 0.0)
                ink.left = x / ratio;
            ink.right = (x + 1) / ratio;
            break;
        }
    }
    return ink;
}

bool hasColour(const QImage &picture, const QRectF &area, const QColor &colour)
{
    const double ratio = picture.devicePixelRatio();
    const QRect pixels(QPointF(area.topLeft() * ratio).toPoint(),
                       QSizeF(area.size() * ratio).toSize());
    const QImage part = picture.copy(pixels);
    return pixelsUnlike(part, colour) < part.width() * part.height();
}

double topOfInk(const QImage &picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixelColor(x, y).alpha() > 60)
                return y / picture.devicePixelRatio();
        }
    }
    return -1.0;
}

void showAtRest(CheckRow &row)
{
    row.resize(kWidth, row.height());
    row.setReveal(1.0);
}

} // namespace

class TestCheckRow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void isLowEnoughForNine();
    void hiddenRowPaintsNothing();
    void badge_data();
    void badge();
    void texts_data();
    void texts();
    void valueIsShownWhole();
    void valueGivesWayToTheLabel();
    void labelKeepsToItsColumn();
    void hairline();
    void slidesUpWhileItFadesIn();
    void revealTakes300Milliseconds();
    void longValueKeepsItsVerdict();
    void figureStaysWhenTheVolumeIsLong_data();
    void figureStaysWhenTheVolumeIsLong();
    void shortenedValueHasAToolTip();
    void newResultShowsAtOnce();
    void isReadAloud();
};

void TestCheckRow::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestCheckRow::isLowEnoughForNine()
{
    CheckRow row(kGood, nullptr);
    QCOMPARE(row.minimumHeight(), row.maximumHeight());
    QVERIFY(row.height() <= 28);
    QVERIFY(row.height() >= 18);
}

void TestCheckRow::hiddenRowPaintsNothing()
{
    CheckRow row(kGood, nullptr);
    row.resize(kWidth, row.height());
    QCOMPARE(row.reveal(), 0.0);
    QCOMPARE(pixelsUnlike(grabWidget(row), Qt::transparent), 0);
    row.setReveal(0.001);
    QCOMPARE(pixelsUnlike(grabWidget(row), Qt::transparent), 0);
    row.setReveal(0.02);
    QVERIFY(pixelsUnlike(grabWidget(row), Qt::transparent) > 0);
}

void TestCheckRow::badge_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<double>("ratio");
    for (double ratio : { 1.0, 2.0 }) {
        QTest::addRow("light, ratio %g", ratio) << false << ratio;
        QTest::addRow("dark, ratio %g", ratio) << true << ratio;
    }
}

void TestCheckRow::badge()
{
    QFETCH(bool, dark);
    QFETCH(double, ratio);
    ThemeManager::instance().setDarkMode(dark);
    for (const CheckResult &result : { kGood, kBad }) {
        CheckRow row(result, nullptr);
        showAtRest(row);
        const QImage picture = grabWidget(row, ratio);
        const QColor colour = themedColor(result.ok ? u"@INS_OK"_s : u"@INS_WARN"_s);
        const double top = (row.height() - 16) * 0.5;
        // The circle: 16 px, at the left edge, in the middle of the height, and no more.
        for (const QPointF &inside :
             { QPointF(1.5, 8), QPointF(14.5, 8), QPointF(8, 1.5), QPointF(8, 14.5) })
            QCOMPARE(colourAt(picture, inside + QPointF(0, top)), colour);
        for (const QPointF &outside :
             { QPointF(0.5, 0.5), QPointF(15.5, 0.5), QPointF(8, -1), QPointF(17, 8) })
            QCOMPARE(colourAt(picture, outside + QPointF(0, top)).alpha(), 0);
        // What is on it is white.
        const QImage magnified = grabWidget(row, kMagnified);
        if (result.ok) {
            for (const QPointF &point :
                 { QPointF(0.27, 0.52), QPointF(0.43, 0.68), QPointF(0.75, 0.32) })
                QCOMPARE(colourAt(magnified, point * 16 + QPointF(0, top)), QColor(Qt::white));
            // 1.7 px wide: white 0.6 px beside the line's middle, no longer 1.1 px beside it.
            const QPointF middle = QPointF(0.59, 0.50) * 16 + QPointF(0, top);
            const QPointF across = QPointF(0.36, 0.32) / std::hypot(0.36, 0.32);
            QCOMPARE(colourAt(magnified, middle + 0.6 * across), QColor(Qt::white));
            QCOMPARE(colourAt(magnified, middle + 1.1 * across), colour);
        } else {
            QVERIFY(hasColour(magnified, QRectF(6, top + 3, 4, 10), Qt::white));
            QVERIFY(!hasColour(magnified, QRectF(1, top + 5, 4, 6), Qt::white));
            QVERIFY(!hasColour(magnified, QRectF(11, top + 5, 4, 6), Qt::white));
        }
    }
}

void TestCheckRow::texts_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void TestCheckRow::texts()
{
    QFETCH(bool, dark);
    ThemeManager::instance().setDarkMode(dark);
    for (const CheckResult &result : { kGood, kBad }) {
        CheckRow row(result, nullptr);
        showAtRest(row);
        const QImage picture = grabWidget(row, kMagnified);
        // The label begins 11 px right of the badge; a letter's own bearing is about a pixel.
        const Ink label = inkOf(picture, 17, kWidth / 2);
        QVERIFY2(label.left >= 27 && label.left < 29.5, qPrintable(QString::number(label.left)));
        QFont labelFont = row.font();
        labelFont.setPixelSize(12);
        const double advance = QFontMetricsF(labelFont).horizontalAdvance(result.label);
        QVERIFY(std::abs(label.right - 27 - advance) < 2.5);
        const QRectF labelArea(27, 0, 60, row.height() - 2);
        QVERIFY(hasColour(picture, labelArea, themedColor(u"@INS_TX"_s)));

        // The value ends at the right edge, in the monospaced face.
        const Ink value = inkOf(picture, 120, kWidth);
        QVERIFY2(value.right > kWidth - 2.5, qPrintable(QString::number(value.right)));
        QFont valueFont(u"JetBrains Mono"_s);
        valueFont.setPixelSize(11);
        const double width = QFontMetricsF(valueFont).horizontalAdvance(result.value);
        QVERIFY(std::abs(value.left - (kWidth - width)) < 2.5);
        const QRectF valueArea(kWidth - width, 0, width, row.height() - 2);
        QVERIFY(
            hasColour(picture, valueArea, themedColor(result.ok ? u"@INS_TX2"_s : u"@INS_WARN"_s)));
        QVERIFY(
            !hasColour(picture, valueArea, themedColor(result.ok ? u"@INS_WARN"_s : u"@INS_TX"_s)));
    }
}

// Far wider than the rest of the row beside the label's column, and still not shortened.
void TestCheckRow::valueIsShownWhole()
{
    const QString value(48, u'm');
    CheckRow row({ u"Processor"_s, value, true }, nullptr);
    showAtRest(row);
    QFont font(u"JetBrains Mono"_s);
    font.setPixelSize(11);
    const double width = QFontMetricsF(font).horizontalAdvance(value);
    QVERIFY(width > kWidth * 0.6);
    const Ink ink = inkOf(grabWidget(row, 2.0), kWidth - width - 4, kWidth);
    QVERIFY(std::abs(ink.left - (kWidth - width)) < 2.5);
}

void TestCheckRow::valueGivesWayToTheLabel()
{
    const CheckResult result { u"Operating system"_s, QString(200, u'm'), true };
    CheckRow row(result, nullptr);
    showAtRest(row);
    const QImage picture = grabWidget(row, 2.0);
    QFont font = row.font();
    font.setPixelSize(12);
    const double labelRight = 27 + QFontMetricsF(font).horizontalAdvance(result.label);
    // A gap that is to be seen between the two, and the end of the value cut off instead.
    QCOMPARE(inkOf(picture, labelRight + 1, labelRight + 6).left, -1.0);
    QVERIFY(inkOf(picture, labelRight + 6, labelRight + 30).left > 0.0);
    CheckRow alone({ result.label, {}, true }, nullptr);
    showAtRest(alone);
    const QImage untouched = grabWidget(alone, 2.0);
    const QRect labelArea(0, 0, int(labelRight * 2), picture.height());
    QCOMPARE(picture.copy(labelArea), untouched.copy(labelArea));
}

void TestCheckRow::labelKeepsToItsColumn()
{
    CheckRow row({ QString(100, u'm'), {}, true }, nullptr);
    showAtRest(row);
    const Ink label = inkOf(grabWidget(row, 2.0), 17, kWidth);
    QVERIFY2(std::abs(label.right - (27 + 0.55 * kWidth)) < 1.5,
             qPrintable(QString::number(label.right)));
}

void TestCheckRow::hairline()
{
    CheckRow row(kGood, nullptr);
    showAtRest(row);
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        for (double ratio : kScreenRatios) {
            const QImage picture = grabWidget(row, ratio);
            QVERIFY(hasHairline(picture, Qt::BottomEdge, themedColor(u"@INS_LINE"_s)));
            QCOMPARE(colourAt(picture, { kWidth / 2.0, row.height() - 1.5 }).alpha(), 0);
        }
    }
}

void TestCheckRow::slidesUpWhileItFadesIn()
{
    CheckRow row(kGood, nullptr);
    showAtRest(row);
    const double atRest = topOfInk(grabWidget(row, 4.0));
    for (double reveal : { 0.4, 0.6, 0.8 }) {
        row.setReveal(reveal);
        const QImage picture = grabWidget(row, 4.0);
        const double way = topOfInk(picture) - atRest;
        QVERIFY2(std::abs(way - (1.0 - reveal) * 5.0) < 0.3, qPrintable(QString::number(way)));
        const QPointF inBadge(2.0, row.height() / 2.0);
        QVERIFY(std::abs(colourAt(picture, inBadge).alphaF() - reveal) < 0.02);
    }
}

void TestCheckRow::revealTakes300Milliseconds()
{
    ManualClock clock;
    CheckRow row(kGood, nullptr);
    row.setRevealed(true);
    const QEasingCurve curve(QEasingCurve::OutCubic);
    for (int step = 1; step <= 3; ++step) {
        clock.pass(100);
        QVERIFY(std::abs(row.reveal() - curve.valueForProgress(step / 3.0)) < 0.02);
    }
    QCOMPARE(row.reveal(), 1.0);
}

void TestCheckRow::longValueKeepsItsVerdict()
{
    const QString verdict = u" — unsupported"_s;
    const auto rightEnd = [](const QString &value) {
        CheckRow row({ u"Operating system"_s, value, false }, nullptr);
        row.resize(kWidth, row.sizeHint().height());
        row.setReveal(1.0);
        return grabWidget(row).copy(kWidth - 80, 0, 80, row.height());
    };
    QCOMPARE(rightEnd(u"Windows 10 Enterprise for Workstations · 1803 · 64-bit"_s + verdict),
             rightEnd(u"Windows 10 · 1803"_s + verdict));
}

void TestCheckRow::figureStaysWhenTheVolumeIsLong_data()
{
    QTest::addColumn<QString>("figure");
    QTest::addColumn<bool>("ok");
    QTest::newRow("enough") << u"220 MB required · 95.3 GB free on "_s << true;
    QTest::newRow("too little") << u"220 MB required · only 95.3 MB free on "_s << false;
}

void TestCheckRow::figureStaysWhenTheVolumeIsLong()
{
    QFETCH(QString, figure);
    QFETCH(bool, ok);
    CheckRow row({ u"Disk space"_s, figure + uR"(\\fileserver\departments\engineering)"_s, ok },
                 nullptr);
    showAtRest(row);
    const QString first = shownLines(row).last();
    QVERIFY2(first.contains(figure + uR"(\\)"), qPrintable(first));
    QVERIFY2(first.endsWith(u"ing"_s), qPrintable(first));
    QCOMPARE(first.count(u'…'), 1);
    const QPointF place = draw(row, 1.0).texts.last().baseline;

    // However much longer the volume is, the figure stands where it stood.
    row.setResult({ u"Disk space"_s, figure + u"\\\\"_s + longWord(), ok });
    QVERIFY(shownLines(row).last().contains(figure));
    QCOMPARE(draw(row, 1.0).texts.last().baseline, place);
}

void TestCheckRow::shortenedValueHasAToolTip()
{
    const QString value = u"220 MB required · 95.3 GB free on \\\\a  & <b>\\"_s + longWord();
    CheckRow row({ u"Disk space"_s, value, true }, nullptr);
    row.resize(kWidth, row.height());
    QCOMPARE(toolTipOf(row), QString()); // nothing is to be seen yet
    row.setRevealed(true);
    showAtRest(row);
    QCOMPARE(toolTipOf(row), value);
    QCOMPARE(row.accessibleName(), u"Disk space: "_s + value);
    QCOMPARE(QAccessible::queryAccessibleInterface(&row)->text(QAccessible::Description),
             QString());
    row.setResult(kGood);
    QCOMPARE(toolTipOf(row), QString());
}

void TestCheckRow::newResultShowsAtOnce()
{
    CheckRow row(kGood, nullptr);
    showAtRest(row);
    row.setResult(kBad);
    QCOMPARE(row.result(), kBad);
    CheckRow bad(kBad, nullptr);
    showAtRest(bad);
    QCOMPARE(grabWidget(row), grabWidget(bad));
}

void TestCheckRow::isReadAloud()
{
    CheckRow row(kGood, nullptr);
    QVERIFY(row.accessibleName().contains(u"Memory"_s));
    QVERIFY(row.accessibleName().contains(u"16 GB"_s));
    row.setResult(kBad);
    QVERIFY(row.accessibleName().contains(u"3.9 GB — 4 GB recommended"_s));
}

QTEST_MAIN(TestCheckRow)
#include "tst_checkrow.moc"
