#include "app/applicationfonts.h"
#include "pages/manualclock.h"
#include "pages/strictwarnings.h"
#include "theme/thememanager.h"
#include "wizard/progressparts.h"

#include <QTest>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

const QStringList kSteps { u"One"_s, u"Two"_s, u"Three"_s, u"Four"_s };

} // namespace

class TestProgressPageFigures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void percentage_data();
    void percentage();
    void progressMovesEverything();
    void barGlides();
    void resetStopsTheGlide();
    void sweep();
    void fileIsShownAsItIs_data();
    void fileIsShownAsItIs();
    void statusReplacesTheCaption();
    void completeShowsAllSteps();
};

void TestProgressPageFigures::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestProgressPageFigures::percentage_data()
{
    QTest::addColumn<double>("fraction");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << 0.0 << u"0%"_s;
    QTest::newRow("below a half") << 0.004 << u"0%"_s;
    QTest::newRow("a half") << 0.005 << u"1%"_s;
    QTest::newRow("between") << 0.43 << u"43%"_s;
    QTest::newRow("half away from zero, not to even") << 0.125 << u"13%"_s;
    QTest::newRow("below the end") << 0.994 << u"99%"_s;
    QTest::newRow("rounded to the end") << 0.995 << u"100%"_s;
    QTest::newRow("1") << 1.0 << u"100%"_s;
}

void TestProgressPageFigures::percentage()
{
    QFETCH(double, fraction);
    const ProgressParts world(u"install"_s);
    world.page->begin(kSteps);
    world.page->setProgress(fraction);
    QTEST(world.percent->text(), "text");
}

void TestProgressPageFigures::progressMovesEverything()
{
    for (const char *name : { "install", "update", "uninstall" }) {
        const ProgressParts world(QString::fromLatin1(name));
        world.page->begin(kSteps);
        world.page->setProgress(0.5);
        QCOMPARE(world.percent->text(), u"50%"_s);
        QCOMPARE(world.track->target(), 0.5);
        QCOMPARE(world.shownSteps(), 3);
        world.page->setProgress(0.0);
        QCOMPARE(world.shownSteps(), 1);
    }
}

void TestProgressPageFigures::barGlides()
{
    ManualClock clock;
    const ProgressParts world(u"install"_s);
    world.page->begin(kSteps);
    world.page->setProgress(0.437);
    QCOMPARE(world.track->value(), 0.0);
    clock.pass(150);
    QVERIFY(std::abs(world.track->value() - 0.437 / 2) < 0.02);
    world.page->setProgress(0.9);
    clock.pass(300);
    QCOMPARE(world.track->value(), 0.9);
}

void TestProgressPageFigures::resetStopsTheGlide()
{
    ManualClock clock;
    const ProgressParts world(u"install"_s);
    world.page->begin(kSteps);
    world.page->setWaiting(true);
    world.page->setProgress(0.8);
    clock.pass(100);
    QVERIFY(world.track->value() > 0.0);
    world.page->resetBar();
    QCOMPARE(world.track->value(), 0.0);
    clock.pass(300);
    QCOMPARE(world.track->value(), 0.0);
    QVERIFY(!world.track->isIndeterminate());
}

void TestProgressPageFigures::sweep()
{
    const ProgressParts world(u"install"_s);
    world.page->begin(kSteps);
    QVERIFY(!world.track->isIndeterminate());
    world.page->setWaiting(true);
    QVERIFY(world.track->isIndeterminate());
    world.page->setStatus(u"Unpacking"_s);
    world.page->setCurrentFile(u"a.dll"_s);
    QVERIFY(world.track->isIndeterminate());
    world.page->setProgress(0.01);
    QVERIFY(!world.track->isIndeterminate());
    world.page->setWaiting(true);
    world.page->showError(u"No"_s);
    QVERIFY(!world.track->isIndeterminate());
    world.page->setWaiting(true);
    world.page->setWaiting(false);
    QVERIFY(!world.track->isIndeterminate());
}

void TestProgressPageFigures::fileIsShownAsItIs_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("usual") << uR"(C:\Program Files\Varnel Schematics\libEGL.dll)"_s;
    QTest::newRow("markup") << kLiteral;
    QTest::newRow("long") << longWord();
    QTest::newRow("blanks") << u"  a  b  "_s;
}

void TestProgressPageFigures::fileIsShownAsItIs()
{
    QFETCH(QString, file);
    const ProgressParts world(u"install"_s);
    world.page->begin(kSteps);
    world.page->setCurrentFile(file);
    QCOMPARE(world.file->text(), file);
    QCOMPARE(world.file->textFormat(), Qt::PlainText);
}

void TestProgressPageFigures::statusReplacesTheCaption()
{
    const ProgressParts world(u"install"_s);
    world.page->begin(kSteps);
    world.page->setStatus(kLiteral);
    QCOMPARE(world.caption->text(), kLiteral);
    QCOMPARE(world.caption->textFormat(), Qt::PlainText);
    world.page->setProgress(0.4);
    world.page->setCurrentFile(u"a.dll"_s);
    QCOMPARE(world.caption->text(), kLiteral);
    world.page->setStatus(u"Finishing up…"_s);
    QCOMPARE(world.caption->text(), u"Finishing up…"_s);
}

void TestProgressPageFigures::completeShowsAllSteps()
{
    const ProgressParts world(u"install"_s);
    world.page->begin(kSteps);
    world.page->completeSteps();
    QCOMPARE(world.shownSteps(), 4);
}

QTEST_MAIN(TestProgressPageFigures)
#include "tst_progresspage_figures.moc"
