#include "pages/manualclock.h"
#include "pages/strictwarnings.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/course.h"
#include "widgets/look.h"
#include "widgets/radiooption.h"

#include <QButtonGroup>
#include <QMetaProperty>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kDuration = 160;
/// So many device pixels per pixel that strokes have solid insides and clear edges.
constexpr double kMagnified = 8.0;

Course course(double from, double to)
{
    return { from, to, kDuration, QEasingCurve::OutCubic };
}

/// Two options of one group, the first above the second, in a window that is active.
struct Pair
{
    Pair()
    {
        first.setGeometry(0, 0, 200, 30);
        second.setGeometry(0, 30, 200, 30);
        group.addButton(&first);
        group.addButton(&second);
    }

    void show()
    {
        window.resize(400, 60);
        window.show();
        window.activateWindow();
        (void)QTest::qWaitForWindowActive(&window);
    }

    QWidget window;
    RadioOption first { u"First"_s, &window };
    RadioOption second { u"Second"_s, &window };
    QButtonGroup group;
};

bool ringIsSeen(RadioOption &option)
{
    return difference(colourAt(grabWidget(option, 2.0), { 100, 0.75 }),
                      themedColor(u"@INS_ACCENT"_s))
        .isEmpty();
}

} // namespace

class TestRadioOption : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void property();
    void selecting();
    void deselecting();
    void turnsBackFromWhereItIs();
    void checkedBeforeItIsShown();
    void otherOneOfTheGroupGoesOut();
    void oneOfAGroupStaysChecked();
    void arrowKeysMove_data();
    void arrowKeysMove();
    void tabMeetsTheGroupOnce();
    void ring_data();
    void ring();
    void ringIsInTheMiddle_data();
    void ringIsInTheMiddle();
    void ringColourTurnsAtOnce_data();
    void ringColourTurnsAtOnce();
    void dot_data();
    void dot();
    void liesOnThePlate();
};

void TestRadioOption::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestRadioOption::property()
{
    const QMetaObject &meta = RadioOption::staticMetaObject;
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 1);
    const QMetaProperty property = meta.property(meta.propertyOffset());
    QCOMPARE(property.name(), "selectProgress");
    QCOMPARE(property.metaType(), QMetaType::fromType<double>());
    QVERIFY(property.isWritable());
    QVERIFY(meta.indexOfProperty("hoverProgress") >= 0);
}

void TestRadioOption::selecting()
{
    ManualClock clock;
    QWidget parent;
    RadioOption option(u"A"_s, &parent);
    option.setChecked(true);
    QCOMPARE(departure(clock, course(0.0, 1.0), [&] { return option.selectProgress(); }),
             QString());
}

void TestRadioOption::deselecting()
{
    ManualClock clock;
    QWidget parent;
    RadioOption option(u"A"_s, &parent);
    option.setChecked(true);
    clock.pass(kDuration);
    option.setChecked(false);
    QCOMPARE(departure(clock, course(1.0, 0.0), [&] { return option.selectProgress(); }),
             QString());
}

void TestRadioOption::turnsBackFromWhereItIs()
{
    ManualClock clock;
    QWidget parent;
    RadioOption option(u"A"_s, &parent);
    option.setChecked(true);
    clock.pass(40);
    const double turn = option.selectProgress();
    QVERIFY(turn > 0.4 && turn < 0.7);
    option.setChecked(false);
    QCOMPARE(departure(clock, course(turn, 0.0), [&] { return option.selectProgress(); }),
             QString());
    option.setChecked(true);
    clock.pass(kDuration);
    QCOMPARE(option.selectProgress(), 1.0);
}

void TestRadioOption::checkedBeforeItIsShown()
{
    QWidget parent;
    RadioOption option(u"A"_s, &parent);
    option.setChecked(true);
    QVERIFY(option.isChecked());
    QTRY_COMPARE_WITH_TIMEOUT(option.selectProgress(), 1.0, 10000);
}

void TestRadioOption::otherOneOfTheGroupGoesOut()
{
    ManualClock clock;
    Pair pair;
    pair.second.setChecked(true);
    clock.pass(kDuration);
    pair.first.click();
    QVERIFY(!pair.second.isChecked());
    QCOMPARE(pair.first.selectProgress(), 0.0);
    QCOMPARE(pair.second.selectProgress(), 1.0);
    clock.pass(kDuration / 2);
    QVERIFY(std::abs(pair.first.selectProgress() - course(0.0, 1.0).at(kDuration / 2)) < 0.02);
    QVERIFY(std::abs(pair.first.selectProgress() + pair.second.selectProgress() - 1.0) < 0.02);
    clock.pass(kDuration / 2);
    QCOMPARE(pair.first.selectProgress(), 1.0);
    QCOMPARE(pair.second.selectProgress(), 0.0);
}

void TestRadioOption::oneOfAGroupStaysChecked()
{
    ManualClock clock;
    Pair pair;
    pair.first.click();
    clock.pass(kDuration);
    pair.first.click();
    clock.pass(kDuration);
    QVERIFY(pair.first.isChecked());
    QCOMPARE(pair.first.selectProgress(), 1.0);
}

void TestRadioOption::arrowKeysMove_data()
{
    QTest::addColumn<Qt::Key>("there");
    QTest::addColumn<Qt::Key>("back");
    QTest::addColumn<QPoint>("place");
    QTest::newRow("down and up") << Qt::Key_Down << Qt::Key_Up << QPoint(0, 30);
    QTest::newRow("right and left") << Qt::Key_Right << Qt::Key_Left << QPoint(200, 0);
}

void TestRadioOption::arrowKeysMove()
{
    QFETCH(const Qt::Key, there);
    QFETCH(const Qt::Key, back);
    QFETCH(const QPoint, place);
    Pair pair;
    pair.second.move(place);
    pair.first.setChecked(true);
    pair.show();
    pair.first.setFocus();
    QTest::keyClick(&pair.first, there);
    QVERIFY(pair.second.hasFocus());
    QVERIFY(pair.second.isChecked());
    QVERIFY(!pair.first.isChecked());
    QVERIFY(ringIsSeen(pair.second));
    QVERIFY(!ringIsSeen(pair.first));
    QTest::keyClick(&pair.second, back);
    QVERIFY(pair.first.hasFocus());
    QVERIFY(pair.first.isChecked());
    QVERIFY(!pair.second.isChecked());
    QVERIFY(ringIsSeen(pair.first));
    QVERIFY(!ringIsSeen(pair.second));
}

void TestRadioOption::tabMeetsTheGroupOnce()
{
    Pair pair;
    auto *after = new QPushButton(u"After"_s, &pair.window);
    after->setGeometry(300, 0, 50, 20);
    pair.first.setChecked(true);
    pair.show();
    pair.first.setFocus();
    QTest::keyClick(&pair.first, Qt::Key_Tab);
    QVERIFY(after->hasFocus());
    QTest::keyClick(after, Qt::Key_Backtab);
    QVERIFY(pair.first.hasFocus());
    QVERIFY(ringIsSeen(pair.first));
    QTest::keyClick(&pair.first, Qt::Key_Down);
    QTest::keyClick(&pair.second, Qt::Key_Tab);
    QVERIFY(after->hasFocus());
}

void TestRadioOption::ring_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<double>("progress");
    QTest::addColumn<QString>("colour");
    QTest::newRow("light") << false << 0.0 << u"@INS_LINE2"_s;
    QTest::newRow("light, selected") << false << 1.0 << u"@INS_ACCENT"_s;
    QTest::newRow("dark") << true << 0.0 << u"@INS_LINE2"_s;
    QTest::newRow("dark, selected") << true << 1.0 << u"@INS_ACCENT"_s;
}

void TestRadioOption::ring()
{
    QFETCH(const bool, dark);
    QFETCH(const double, progress);
    QFETCH(const QString, colour);
    ThemeManager::instance().setDarkMode(dark);
    RadioOption option(u""_s);
    option.resize(200, 30);
    option.setSelectProgress(progress);
    const QImage picture = grabWidget(option, kMagnified);
    const QColor pen = themedColor(colour);
    const QColor ground = themedColor(u"@INS_BG"_s);
    // A stroke of 1.5 about the circle of radius 8 around (17, 15).
    QCOMPARE(inkRect(picture), QRectF(8.25, 6.25, 17.5, 17.5));
    for (double distance : { 7.45, 8.0, 8.55 }) {
        QCOMPARE(difference(colourAt(picture, { 17 - distance, 15 }), pen), QString());
        QCOMPARE(difference(colourAt(picture, { 17 + distance, 15 }), pen), QString());
        QCOMPARE(difference(colourAt(picture, { 17, 15 - distance }), pen), QString());
        const double diagonal = distance * M_SQRT1_2;
        QCOMPARE(difference(colourAt(picture, { 17 + diagonal, 15 + diagonal }), pen), QString());
    }
    for (double distance : { 4.5, 7.1 }) {
        QCOMPARE(difference(colourAt(picture, { 17 - distance, 15 }), ground), QString());
        QCOMPARE(difference(colourAt(picture, { 17, 15 + distance }), ground), QString());
    }
    for (double ratio : { 1.0, 2.0 }) {
        const QImage small = grabWidget(option, ratio);
        QCOMPARE(difference(colourAt(small, { 11.5, 15 }), ground), QString());
        const double inner = ratio == 1.0 ? 0.75 : 1.0; // of the pixel at 9 that the stroke covers
        QCOMPARE(difference(colourAt(small, { 9.0, 15 }), blended(pen, inner, ground), 16),
                 QString());
    }
}

void TestRadioOption::ringIsInTheMiddle_data()
{
    QTest::addColumn<int>("height");
    QTest::newRow("even") << 30;
    QTest::newRow("odd, on a half pixel") << 33;
    QTest::newRow("lower than the ring") << 12;
    QTest::newRow("high") << 80;
}

void TestRadioOption::ringIsInTheMiddle()
{
    QFETCH(const int, height);
    RadioOption option(u""_s);
    option.resize(200, height);
    const QRectF ink = inkRect(grabWidget(option, kMagnified));
    QCOMPARE(ink.left(), 8.25);
    QCOMPARE(ink.top(), qMax((height - 16) / 2.0 - 0.75, 0.0));
    QCOMPARE(ink.bottom(), qMin((height + 16) / 2.0 + 0.75, double(height)));
}

void TestRadioOption::ringColourTurnsAtOnce_data()
{
    QTest::addColumn<double>("progress");
    QTest::addColumn<QString>("colour");
    QTest::newRow("at rest") << 0.0 << u"@INS_LINE2"_s;
    QTest::newRow("just not visible") << 0.001 << u"@INS_LINE2"_s;
    QTest::newRow("just visible") << 0.0011 << u"@INS_ACCENT"_s;
    QTest::newRow("half-way") << 0.5 << u"@INS_ACCENT"_s;
}

void TestRadioOption::ringColourTurnsAtOnce()
{
    QFETCH(const double, progress);
    QFETCH(const QString, colour);
    RadioOption option(u""_s);
    option.resize(200, 30);
    option.setSelectProgress(progress);
    QCOMPARE(difference(colourAt(grabWidget(option, kMagnified), { 9, 15 }), themedColor(colour)),
             QString());
}

void TestRadioOption::dot_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<double>("progress");
    QTest::newRow("quarter") << false << 0.25;
    QTest::newRow("half") << false << 0.5;
    QTest::newRow("full") << false << 1.0;
    QTest::newRow("dark, half") << true << 0.5;
    QTest::newRow("dark, full") << true << 1.0;
}

void TestRadioOption::dot()
{
    QFETCH(const bool, dark);
    QFETCH(const double, progress);
    ThemeManager::instance().setDarkMode(dark);
    RadioOption option(u""_s);
    option.resize(200, 31);
    option.setSelectProgress(progress);
    const QImage picture = grabWidget(option, kMagnified);
    const QPointF centre(17, 15.5);
    const double radius = 4.0 * progress;
    for (const QPointF &way : { QPointF(1, 0), QPointF(-1, 0), QPointF(0, 1), QPointF(0, -1),
                                QPointF(M_SQRT1_2, M_SQRT1_2) }) {
        QCOMPARE(difference(colourAt(picture, centre + way * (radius - 0.2)),
                            themedColor(u"@INS_ACCENT"_s)),
                 QString());
        QCOMPARE(
            difference(colourAt(picture, centre + way * (radius + 0.2)), themedColor(u"@INS_BG"_s)),
            QString());
    }
    QCOMPARE(difference(colourAt(picture, centre), themedColor(u"@INS_ACCENT"_s)), QString());
}

void TestRadioOption::liesOnThePlate()
{
    RadioOption option(u""_s);
    option.resize(200, 30);
    option.setHoverProgress(1.0);
    const QImage picture = grabWidget(option, kMagnified);
    QCOMPARE(difference(colourAt(picture, { 17, 15 }), themedColor(u"@INS_BG"_s)), QString());
    QCOMPARE(difference(colourAt(picture, { 9, 15 }), themedColor(u"@INS_LINE2"_s)), QString());
    QCOMPARE(difference(colourAt(picture, { 7, 15 }), themedColor(u"@INS_PANEL"_s)), QString());
}

QTEST_MAIN(TestRadioOption)
#include "tst_radiooption.moc"
