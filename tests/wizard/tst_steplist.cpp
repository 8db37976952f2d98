#include "app/applicationfonts.h"
#include "pages/layoutoutline.h"
#include "pages/manualclock.h"
#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "wizard/steplist.h"
#include "wizard/steprow.h"

#include <QEasingCurve>
#include <QPointer>
#include <QTest>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

const QStringList kFour { u"One"_s, u"Two"_s, u"Three"_s, u"Four"_s };
const QStringList kFive { u"One"_s, u"Two"_s, u"Three"_s, u"Four"_s, u"Five"_s };

/// So many device pixels per pixel that letters have a solid inside.
constexpr double kMagnified = 8.0;

int shownRows(const StepList &list)
{
    int count = 0;
    bool gap = false;
    for (const StepList::StepRow *row : list.rows()) {
        if (row->isRevealed() && gap)
            return -1; // a row without the one before it
        gap = gap || !row->isRevealed();
        count += row->isRevealed() ? 1 : 0;
    }
    return count;
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

int pixelsOf(const QImage &picture, double left, double right, const QColor &colour)
{
    const double ratio = picture.devicePixelRatio();
    const QImage part =
        picture.copy(int(left * ratio), 0, int((right - left) * ratio), picture.height());
    return part.width() * part.height() - pixelsUnlike(part, colour);
}

} // namespace

class TestStepList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void rowsAreHiddenAtFirst();
    void thresholds_data();
    void thresholds();
    void rowsGoAgainBelowTheirThreshold();
    void revealTakes300Milliseconds();
    void turningBackStartsFromThePresentValue();
    void unchangedRowsAreLeftAlone();
    void completeShowsTheRest();
    void resetHidesAtOnce();
    void newStepsReplaceTheOld();
    void withoutSteps();
    void rowFont();
    void hiddenRowPaintsNothing();
    void rowPainting_data();
    void rowPainting();
    void rowSlidesUpWhileItFadesIn();
    void rowIsReadAloud();
};

void TestStepList::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestStepList::rowsAreHiddenAtFirst()
{
    StepList list;
    QVERIFY(list.rows().isEmpty());
    list.setSteps(kFour);
    QStringList texts;
    for (const StepList::StepRow *row : list.rows()) {
        texts.append(row->text());
        QCOMPARE(row->reveal(), 0.0);
        QVERIFY(!row->isRevealed());
        QCOMPARE(row->parentWidget(), &list);
    }
    QCOMPARE(texts, kFour);
    QCOMPARE(layoutOutline(&list).size(), 5);
    QList<QWidget *> inLayout = layoutWidgets(list.layout());
    for (int i = 0; i < 4; ++i)
        QCOMPARE(inLayout[i], list.rows().at(i));
}

void TestStepList::thresholds_data()
{
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<double>("fraction");
    QTest::addColumn<int>("shown");
    QTest::newRow("four, nothing yet") << kFour << 0.0 << 1;
    QTest::newRow("four, below the second") << kFour << 0.2499 << 1;
    QTest::newRow("four, the second") << kFour << 0.25 << 2;
    QTest::newRow("four, below the third") << kFour << 0.4999 << 2;
    QTest::newRow("four, the third") << kFour << 0.5 << 3;
    QTest::newRow("four, below the fourth") << kFour << 0.7499 << 3;
    QTest::newRow("four, the fourth") << kFour << 0.75 << 4;
    QTest::newRow("four, the end") << kFour << 1.0 << 4;
    QTest::newRow("five, nothing yet") << kFive << 0.0 << 1;
    QTest::newRow("five, below the second") << kFive << 0.1999 << 1;
    QTest::newRow("five, the second") << kFive << 0.2 << 2;
    QTest::newRow("five, below the third") << kFive << 0.3999 << 2;
    QTest::newRow("five, the third") << kFive << 0.4 << 3;
    QTest::newRow("five, the fourth") << kFive << 0.6 << 4;
    QTest::newRow("five, below the fifth") << kFive << 0.7999 << 4;
    QTest::newRow("five, the fifth") << kFive << 0.8 << 5;
    QTest::newRow("below everything") << kFour << -0.01 << 0;
    QTest::newRow("not a number") << kFour << qQNaN() << 0;
}

void TestStepList::thresholds()
{
    QFETCH(QStringList, steps);
    QFETCH(double, fraction);
    StepList list;
    list.setSteps(steps);
    list.setProgress(fraction);
    QTEST(shownRows(list), "shown");
}

void TestStepList::rowsGoAgainBelowTheirThreshold()
{
    ManualClock clock;
    StepList list;
    list.setSteps(kFour);
    list.setProgress(1.0);
    clock.pass(300);
    list.setProgress(0.3);
    QCOMPARE(shownRows(list), 2);
    clock.pass(300);
    QCOMPARE(list.rows().at(1)->reveal(), 1.0);
    QCOMPARE(list.rows().at(2)->reveal(), 0.0);
    QCOMPARE(list.rows().at(3)->reveal(), 0.0);
}

void TestStepList::revealTakes300Milliseconds()
{
    ManualClock clock;
    const QEasingCurve curve(QEasingCurve::OutCubic);
    StepList list;
    list.setSteps(kFour);
    list.setProgress(0.0);
    const auto *row = list.rows().first();
    QCOMPARE(row->reveal(), 0.0);
    for (int step = 1; step <= 3; ++step) {
        clock.pass(100);
        QVERIFY(std::abs(row->reveal() - curve.valueForProgress(step / 3.0)) < 0.02);
    }
    QCOMPARE(row->reveal(), 1.0);
    QCOMPARE(list.rows().at(1)->reveal(), 0.0);
}

void TestStepList::turningBackStartsFromThePresentValue()
{
    ManualClock clock;
    StepList list;
    list.setSteps(kFour);
    list.setProgress(0.25);
    clock.pass(100);
    const auto *row = list.rows().at(1);
    const double turn = row->reveal();
    QVERIFY(turn > 0.5 && turn < 1.0);
    list.setProgress(0.1);
    QCOMPARE(row->reveal(), turn);
    clock.pass(150);
    const double half = turn * (1.0 - QEasingCurve(QEasingCurve::OutCubic).valueForProgress(0.5));
    QVERIFY(std::abs(row->reveal() - half) < 0.02);
    clock.pass(150);
    QCOMPARE(row->reveal(), 0.0);
}

// A figure in the middle of a row's entrance does not start the entrance over.
void TestStepList::unchangedRowsAreLeftAlone()
{
    ManualClock clock;
    StepList list;
    list.setSteps(kFour);
    list.setProgress(0.0);
    clock.pass(200);
    list.setProgress(0.1);
    list.setProgress(0.2);
    clock.pass(100);
    QCOMPARE(list.rows().first()->reveal(), 1.0);
}

void TestStepList::completeShowsTheRest()
{
    ManualClock clock;
    StepList list;
    list.setSteps(kFive);
    list.setProgress(0.5);
    clock.pass(300);
    list.complete();
    QCOMPARE(shownRows(list), 5);
    QCOMPARE(list.rows().at(2)->reveal(), 1.0);
    QCOMPARE(list.rows().at(3)->reveal(), 0.0);
    clock.pass(150);
    QVERIFY(list.rows().at(4)->reveal() > 0.5 && list.rows().at(4)->reveal() < 1.0);
    clock.pass(150);
    for (const auto *row : list.rows())
        QCOMPARE(row->reveal(), 1.0);
}

void TestStepList::resetHidesAtOnce()
{
    ManualClock clock;
    StepList list;
    list.setSteps(kFour);
    list.setProgress(0.5);
    clock.pass(100);
    list.reset();
    QCOMPARE(shownRows(list), 0);
    clock.pass(500); // the animations have been stopped, not only set back
    for (const auto *row : list.rows())
        QCOMPARE(row->reveal(), 0.0);
    list.setProgress(0.5);
    clock.pass(300);
    QCOMPARE(list.rows().at(2)->reveal(), 1.0);
}

void TestStepList::newStepsReplaceTheOld()
{
    ManualClock clock;
    StepList list;
    list.setSteps(kFour);
    list.setProgress(1.0);
    clock.pass(100);
    QList<QPointer<StepList::StepRow>> old;
    for (StepList::StepRow *row : list.rows())
        old.append(row);
    list.setSteps(kFive);
    clock.pass(300);
    for (const QPointer<StepList::StepRow> &row : old)
        QTRY_VERIFY(!row);
    QCOMPARE(list.rows().size(), 5);
    QCOMPARE(layoutWidgets(list.layout()).size(), 5);
    QCOMPARE(shownRows(list), 0);
    for (const auto *row : list.rows())
        QCOMPARE(row->reveal(), 0.0);
}

void TestStepList::withoutSteps()
{
    StepList list;
    list.setProgress(0.5);
    list.complete();
    list.reset();
    list.setSteps({});
    list.setProgress(1.0);
    QVERIFY(list.rows().isEmpty());
}

void TestStepList::rowFont()
{
    StepList list;
    list.setSteps(kFour);
    for (const auto *row : list.rows()) {
        QCOMPARE(row->font().family(), u"JetBrains Mono"_s);
        QCOMPARE(row->font().pixelSize(), 11);
    }
}

void TestStepList::hiddenRowPaintsNothing()
{
    StepList::StepRow row(u"Creating shortcuts"_s, nullptr);
    row.resize(440, row.sizeHint().height());
    QCOMPARE(pixelsUnlike(grabWidget(row, 2.0), Qt::transparent), 0);
    row.setReveal(0.001);
    QCOMPARE(pixelsUnlike(grabWidget(row, 2.0), Qt::transparent), 0);
    row.setReveal(0.02);
    QVERIFY(pixelsUnlike(grabWidget(row, 2.0), Qt::transparent) > 0);
}

void TestStepList::rowPainting_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void TestStepList::rowPainting()
{
    QFETCH(bool, dark);
    StepList::StepRow row(u"Mmmmmm"_s, nullptr);
    row.resize(440, row.sizeHint().height());
    row.setReveal(1.0);
    ThemeManager::instance().setDarkMode(dark);
    const QColor sign = themedColor(u"@INS_OK"_s);
    const QColor ink = themedColor(u"@INS_TX2"_s);
    const QFontMetricsF metrics(row.font());
    const double textLeft = metrics.horizontalAdvance(u"\u2713 "_s);
    const double textRight = textLeft + metrics.horizontalAdvance(row.text());
    const QImage picture = grabWidget(row, kMagnified);

    QVERIFY(pixelsOf(picture, 0, textLeft - 1, sign) > 100);
    QCOMPARE(pixelsOf(picture, 0, textLeft - 1, ink), 0);
    QVERIFY(pixelsOf(picture, textLeft, textRight, ink) > 100);
    QCOMPARE(pixelsOf(picture, textLeft, textRight, sign), 0);
    // The text starts right after the sign's advance, and nothing else is on the row.
    QVERIFY(pixelsOf(picture, textLeft, textLeft + 2, ink) > 0);
    const QImage rest = picture.copy(int((textRight + 1) * kMagnified), 0,
                                     int((440 - textRight - 1) * kMagnified), picture.height());
    QCOMPARE(pixelsUnlike(rest, Qt::transparent), 0);
    // In the middle of the height: a line of text is as far from the top as from the bottom.
    const double top = topOfInk(picture);
    const double bottom = topOfInk(picture.mirrored());
    QVERIFY2(std::abs(top - bottom) < 4.0, qPrintable(u"%1 %2"_s.arg(top).arg(bottom)));
}

void TestStepList::rowSlidesUpWhileItFadesIn()
{
    StepList::StepRow row(u"Creating shortcuts"_s, nullptr);
    row.resize(440, row.sizeHint().height());
    row.setReveal(1.0);
    const QImage full = grabWidget(row, 4.0);
    for (double reveal : { 0.5, 0.75 }) {
        row.setReveal(reveal);
        const QImage picture = grabWidget(row, 4.0);
        const double way = topOfInk(picture) - topOfInk(full);
        QVERIFY2(std::abs(way - (1.0 - reveal) * 4.0) <= 0.3, qPrintable(QString::number(way)));
        int strongest = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x)
                strongest = std::max(strongest, picture.pixelColor(x, y).alpha());
        }
        QVERIFY(std::abs(strongest / 255.0 - reveal) < 0.02);
    }
}

void TestStepList::rowIsReadAloud()
{
    StepList list;
    list.setSteps(kFour);
    QCOMPARE(list.rows().at(2)->accessibleName(), u"Three"_s);
}

QTEST_MAIN(TestStepList)
#include "tst_steplist.moc"
