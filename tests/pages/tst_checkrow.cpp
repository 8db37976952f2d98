#include "app/applicationfonts.h"
#include "pages/checkrow.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "support/drawing.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "theme/thememanager.h"

#include <QAccessible>
#include <QTest>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kWidth = 440;
constexpr int kLabelLeft = 27;

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
    [[nodiscard]] double labelRight() const
    {
        QFont font = this->font();
        font.setPixelSize(12);
        return kLabelLeft + QFontMetricsF(font).horizontalAdvance(result().label);
    }
    int paints = 0;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        ++paints;
        CheckRow::paintEvent(event);
    }
};

} // namespace

class TestCheckRow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void tick();
    void slidesFivePixels();
    void valueHasAllRoomBesideTheLabel();
    void valueGivesWayToTheLabel();
    void labelKeepsToItsColumn();
    void figureStaysWhenTheVolumeIsLong_data();
    void figureStaysWhenTheVolumeIsLong();
    void verdictStaysWhenTheNameIsLong();
    void shortenedValueHasAToolTip();
    void newResult();
};

void TestCheckRow::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

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

void TestCheckRow::valueHasAllRoomBesideTheLabel()
{
    const QString value(48, u'm');
    ShownRow row({ u"Processor"_s, value, true });
    QCOMPARE(row.value(), value);
}

void TestCheckRow::valueGivesWayToTheLabel()
{
    ShownRow row({ u"Operating system"_s, longWord(), true });
    const double gap = draw(row, 1.0).texts.last().baseline.x() - row.labelRight();
    QVERIFY2(gap > 6.0 && gap < 20.0, qPrintable(QString::number(gap)));
}

void TestCheckRow::labelKeepsToItsColumn()
{
    ShownRow row({ longWord(), {}, true });
    const QImage picture = grabWidget(row);
    const int right = kLabelLeft + int(0.55 * kWidth);
    const int height = row.height() - 2; // above the line
    QVERIFY(pixelsUnlike(picture.copy(right - 10, 0, 10, height), Qt::transparent) > 0);
    QCOMPARE(pixelsUnlike(picture.copy(right, 0, kWidth - right, height), Qt::transparent), 0);
}

void TestCheckRow::figureStaysWhenTheVolumeIsLong_data()
{
    QTest::addColumn<QString>("figure");
    QTest::newRow("enough") << u"220 MB required · 95.3 GB free on "_s;
    QTest::newRow("too little") << u"220 MB required · only 95.3 MB free on "_s;
}

void TestCheckRow::figureStaysWhenTheVolumeIsLong()
{
    QFETCH(QString, figure);
    ShownRow row({ u"Disk space"_s, figure + uR"(\\fileserver\departments\engineering)"_s, true });
    const QString value = row.value();
    QVERIFY2(value.startsWith(figure + uR"(\\)"), qPrintable(value));
    QVERIFY2(value.endsWith(u"ing"_s), qPrintable(value));
    QCOMPARE(value.count(u'…'), 1);
    const QPointF place = draw(row, 1.0).texts.last().baseline;

    // A longer volume does not move the figure.
    row.setResult({ u"Disk space"_s, figure + u"\\\\"_s + longWord(), true });
    QVERIFY(row.value().startsWith(figure));
    QCOMPARE(draw(row, 1.0).texts.last().baseline, place);
}

void TestCheckRow::verdictStaysWhenTheNameIsLong()
{
    ShownRow row({ u"Operating system"_s,
                   u"Windows 10 Enterprise for Workstations · 1803 · 64-bit — unsupported"_s,
                   false });
    QVERIFY2(row.value().endsWith(u" — unsupported"_s), qPrintable(row.value()));
}

void TestCheckRow::shortenedValueHasAToolTip()
{
    const QString value = u"220 MB required · 95.3 GB free on \\\\a  & <b>\\"_s + longWord();
    ShownRow row({ u"Disk space"_s, value, true });
    QCOMPARE(toolTipOf(row), value);
    QCOMPARE(row.accessibleName(), u"Disk space: "_s + value);
    QCOMPARE(QAccessible::queryAccessibleInterface(&row)->text(QAccessible::Description),
             QString());
    row.resetReveal();
    QCOMPARE(toolTipOf(row), QString()); // nothing is visible yet
    ShownRow whole(kGood);
    QCOMPARE(toolTipOf(whole), QString());
}

void TestCheckRow::newResult()
{
    ShownRow row(kGood);
    QCOMPARE(row.accessibleName(), u"Memory: 16 GB"_s);
    row.show();
    QTRY_VERIFY(row.paints > 0);
    QCoreApplication::processEvents();
    row.paints = 0;
    row.setResult(kBad);
    QTRY_VERIFY(row.paints > 0);
    QCOMPARE(row.accessibleName(), u"Memory: 3.9 GB — 4 GB recommended"_s);
    ShownRow bad(kBad);
    QCOMPARE(grabWidget(row), grabWidget(bad));
}

QTEST_MAIN(TestCheckRow)
#include "tst_checkrow.moc"
