#include "app/applicationfonts.h"
#include "pages/checkrow.h"
#include "pages/lightthemetest.h"
#include "pages/pagetext.h"
#include "support/drawing.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "theme/thememanager.h"
#include "widgets/paintwatch.h"

#include <QAccessible>
#include <QTest>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kWidth = 440;

const CheckResult kGood { u"Memory"_s, u"16 GB"_s, true };
const CheckResult kBad { u"Memory"_s, u"3.9 GB — 4 GB recommended"_s, false };

/// A row that has appeared.
struct ShownRow : SystemCheckPage::CheckRow
{
    explicit ShownRow(const CheckResult &result) : CheckRow(result, nullptr)
    {
        resize(kWidth, height());
        setRevealed(true);
        setReveal(1.0);
    }
    /// What is drawn of the finding.
    [[nodiscard]] QString value() { return shownLines(*this).last(); }
};

} // namespace

class TestCheckRow : public LightThemeTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void tick();
    void slidesFivePixels();
    void valueHasTheRoomBesideTheLabel();
    void longValueIsShortened();
    void newResult();
};

void TestCheckRow::tick()
{
    ShownRow row(kGood);
    const QImage picture = grabWidget(row, 8.0);
    const auto colour = [&](const QPointF &point, const QPointF &offset = {}) {
        return colourAt(picture, point * 16 + QPointF(0, (row.height() - 16) * 0.5) + offset);
    };
    for (const QPointF &corner : { QPointF(0.27, 0.52), QPointF(0.43, 0.68), QPointF(0.75, 0.32) })
        QCOMPARE(colour(corner), QColor(Qt::white));
    // 1.7 px wide: white 0.6 px beside the line's middle, no longer 1.1 px beside it.
    const QPointF middle(0.59, 0.50);
    const QPointF across = QPointF(0.36, 0.32) / std::hypot(0.36, 0.32);
    QCOMPARE(colour(middle, 0.6 * across), QColor(Qt::white));
    QCOMPARE(colour(middle, 1.1 * across), themedColor(u"@INS_OK"_s));
}

void TestCheckRow::slidesFivePixels()
{
    ShownRow row(kGood);
    const auto topOfBadge = [&] {
        const QImage picture = grabWidget(row, 4.0);
        int y = 0;
        while (y < picture.height() && qAlpha(picture.pixel(8 * 4, y)) < 60)
            ++y;
        return y / 4.0;
    };
    const double atRest = topOfBadge();
    row.setReveal(0.6);
    QCOMPARE(topOfBadge() - atRest, 2.0);
}

void TestCheckRow::valueHasTheRoomBesideTheLabel()
{
    const QString value(48, u'm');
    QCOMPARE(ShownRow({ u"Processor"_s, value, true }).value(), value);
    ShownRow row({ u"Operating system"_s, longWord(), true });
    const QList<DrawnText> texts = draw(row, 1.0).texts;
    const double gap = texts.last().baseline.x() - texts.first().baseline.x()
        - QFontMetricsF(texts.first().font).horizontalAdvance(texts.first().text);
    QVERIFY2(gap > 6.0 && gap < 20.0, qPrintable(QString::number(gap)));
}

// The figure keeps its place, and all of the value is read.
void TestCheckRow::longValueIsShortened()
{
    const QString figure = u"220 MB required · 95.3 GB free on "_s;
    const QString value = figure + uR"(\\server  & <b>\departments\engineering)"_s;
    ShownRow row({ u"Disk space"_s, value, true });
    QVERIFY2(row.value().startsWith(figure + uR"(\\)"), qPrintable(row.value()));
    QVERIFY2(row.value().endsWith(u"ing"_s), qPrintable(row.value()));
    QCOMPARE(toolTipOf(row), value);
    QCOMPARE(row.accessibleName(), u"Disk space: "_s + value);
    QCOMPARE(QAccessible::queryAccessibleInterface(&row)->text(QAccessible::Description),
             QString());
    const QPointF place = draw(row, 1.0).texts.last().baseline;
    row.setResult({ u"Disk space"_s, value + longWord(), true });
    QCOMPARE(draw(row, 1.0).texts.last().baseline, place);
    row.resetReveal();
    QCOMPARE(toolTipOf(row), QString()); // nothing is visible yet
    ShownRow whole(kGood);
    QCOMPARE(toolTipOf(whole), QString());
}

void TestCheckRow::newResult()
{
    ShownRow row(kGood);
    QCOMPARE(row.accessibleName(), u"Memory: 16 GB"_s);
    PaintWatch watch(row);
    row.setResult(kBad);
    QVERIFY(watch.seesRepaint());
    QCOMPARE(row.accessibleName(), u"Memory: 3.9 GB — 4 GB recommended"_s);
    ShownRow bad(kBad);
    QCOMPARE(grabWidget(row), grabWidget(bad));
}

QTEST_MAIN(TestCheckRow)
#include "tst_checkrow.moc"
