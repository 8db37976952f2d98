#include "app/applicationfonts.h"
#include "pages/checkrow.h"
#include "pages/manualclock.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "pages/systemcheckpage.h"
#include "pages/timerwatch.h"
#include "support/grab.h"
#include "support/sandbox.h"
#include "theme/thememanager.h"

#include <QGraphicsOpacityEffect>
#include <QJsonObject>
#include <QPointer>
#include <QStorageInfo>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

using CheckRow = SystemCheckPage::CheckRow;

const CheckResult kOff { u"Smart App Control"_s, u"Off"_s, true };
const CheckResult kOn { u"Smart App Control"_s, u"On — blocks the app"_s, false };

constexpr int kPatience = 10'000; // ms
/// When the rows start to appear, in ms after startReveal(), and the warning after them.
const QList<int> kRowShots { 120, 230, 340, 450, 560, 670, 780, 890, 1000 };
constexpr int kWarningShot = 1150;
constexpr int kLongAfter = 1300;

struct ShownPage : SystemCheckPage
{
    ShownPage()
    {
        resize(kPageSize);
        show();
        runChecks({});
    }

    /// The rows of the last run, in their order.
    [[nodiscard]] QList<CheckRow *> rows() const
    {
        QList<CheckRow *> rows;
        for (CheckRow *row : findChildren<CheckRow *>()) {
            if (!row->isHidden())
                rows.append(row);
        }
        return rows;
    }
    [[nodiscard]] QLabel *warning() const { return findChild<QLabel *>(u"callout"_s); }
    [[nodiscard]] double warningOpacity() const
    {
        return qobject_cast<QGraphicsOpacityEffect *>(warning()->graphicsEffect())->opacity();
    }
    [[nodiscard]] bool isAllHidden() const
    {
        for (const CheckRow *row : rows()) {
            if (row->reveal() != 0.0 || row->isRevealed())
                return false;
        }
        return warningOpacity() == 0.0 && !warning()->isVisible();
    }
};

} // namespace

class TestSystemCheckPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void folderIsProbed_data();
    void folderIsProbed();
    void secondRunReplacesTheRows();
    void rowsComeOneAfterAnother();
    void warningComesAfterTheRows();
    void warningIsTakenAway_data();
    void warningIsTakenAway();
    void newRunCallsOffPendingStarts();
    void smartAppControlCanBeSet();
    void smartAppControlWithoutRows();
    void followsTheTheme();
    void fits_data();
    void fits();

private:
    void recordSmartAppControl(int state);

    Sandbox m_sandbox;
};

void TestSystemCheckPage::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
    recordSmartAppControl(0);
}

void TestSystemCheckPage::recordSmartAppControl(int state)
{
    m_sandbox.setRegistry({ { uR"(HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Control\CI\Policy)"_s,
                              QJsonObject { { u"VerifiedAndReputablePolicyState"_s, state } } } });
}

void TestSystemCheckPage::folderIsProbed_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("volumeOf");
    QTest::newRow("folder to be") << m_sandbox.path(u"no/such/folder"_s) << m_sandbox.path({});
    QTest::newRow("empty: the file system's root") << QString() << QDir::rootPath();
#ifdef Q_OS_LINUX
    QTest::newRow("another volume") << u"/proc"_s << u"/proc"_s;
#endif
}

void TestSystemCheckPage::folderIsProbed()
{
    QFETCH(QString, folder);
    QFETCH(QString, volumeOf);
    ShownPage page;
    page.runChecks(folder);
    const QString value = page.rows().at(3)->result().value;
    const QString volume = QDir::toNativeSeparators(QStorageInfo(volumeOf).rootPath());
    QVERIFY2(value.endsWith(u" on "_s + volume), qPrintable(value));
}

void TestSystemCheckPage::secondRunReplacesTheRows()
{
    ShownPage page;
    QList<QPointer<CheckRow>> old;
    for (CheckRow *row : page.rows()) {
        row->setReveal(1.0);
        old.append(row);
    }
    page.runChecks({});
    // The old rows are off the screen at once, though perhaps not deleted yet.
    QCOMPARE(page.checkCount(), 9);
    QCOMPARE(page.rows().size(), 9);
    QVERIFY(page.isAllHidden());
    for (const QPointer<CheckRow> &row : old)
        QTRY_VERIFY(!row);
    QCOMPARE(page.findChildren<CheckRow *>().size(), 9);
}

void TestSystemCheckPage::rowsComeOneAfterAnother()
{
    ManualClock clock;
    TimerWatch watch;
    ShownPage page;
    const QList<CheckRow *> rows = page.rows();
    QVERIFY(page.isAllHidden());
    page.startReveal();
    for (qsizetype i = 0; i < rows.size(); ++i) {
        QTRY_COMPARE_WITH_TIMEOUT(watch.shots().size(), i + 1, kPatience);
        for (qsizetype j = 0; j < rows.size(); ++j)
            QCOMPARE(rows[j]->isRevealed(), j <= i);
        QCOMPARE(rows[i]->reveal(), 0.0);
    }
    clock.pass(300);
    for (const CheckRow *row : rows)
        QCOMPARE(row->reveal(), 1.0);
    // There is no cause for the warning.
    QTest::qWait(kLongAfter - kRowShots.last());
    QCOMPARE(watch.shots(), kRowShots);
}

void TestSystemCheckPage::warningComesAfterTheRows()
{
    recordSmartAppControl(1);
    ManualClock clock;
    TimerWatch watch;
    ShownPage page;
    QCOMPARE(page.rows().last()->result(), kOn);
    page.startReveal();
    QTRY_COMPARE_WITH_TIMEOUT(watch.shots().size(), 10, kPatience);
    QCOMPARE(watch.shots(), kRowShots + QList<int> { kWarningShot });
    QCOMPARE(page.warningOpacity(), 0.0);
    clock.pass(390);
    QVERIFY(page.warningOpacity() > 0.5 && page.warningOpacity() < 1.0);
    clock.pass(10);
    QCOMPARE(page.warningOpacity(), 1.0);
    QVERIFY(page.warning()->isVisible());
}

void TestSystemCheckPage::warningIsTakenAway_data()
{
    QTest::addColumn<bool>("newRun");
    QTest::newRow("reset") << false;
    QTest::newRow("new run") << true;
}

void TestSystemCheckPage::warningIsTakenAway()
{
    QFETCH(bool, newRun);
    recordSmartAppControl(1);
    ManualClock clock;
    TimerWatch watch;
    ShownPage page;
    page.startReveal();
    QTRY_COMPARE_WITH_TIMEOUT(watch.shots().size(), 10, kPatience);
    clock.pass(150);
    QVERIFY(page.rows().first()->reveal() > 0.0);
    QVERIFY(page.warning()->isVisible());
    recordSmartAppControl(0); // what the next run finds
    if (newRun)
        page.runChecks({});
    else
        page.resetReveal();
    QVERIFY(page.isAllHidden());
    clock.pass(500); // the animations have been stopped, not only set back
    QVERIFY(page.isAllHidden());

    watch.clear();
    page.startReveal();
    QTRY_COMPARE_WITH_TIMEOUT(watch.shots().size(), newRun ? 9 : 10, kPatience);
    clock.pass(400);
    QCOMPARE(page.rows().last()->reveal(), 1.0);
    QCOMPARE(page.warningOpacity(), newRun ? 0.0 : 1.0);
}

// An old start neither reaches a new row nor brings the warning.
void TestSystemCheckPage::newRunCallsOffPendingStarts()
{
    recordSmartAppControl(1);
    TimerWatch watch;
    ShownPage page;
    page.startReveal();
    QTRY_COMPARE_WITH_TIMEOUT(watch.shots().size(), 2, kPatience);
    page.runChecks({});
    watch.clear();
    QTest::qWait(kLongAfter);
    QCOMPARE(watch.shots(), QList<int>());
    QVERIFY(page.isAllHidden());
}

void TestSystemCheckPage::smartAppControlCanBeSet()
{
    ManualClock clock;
    TimerWatch watch;
    ShownPage page;
    QCOMPARE(page.rows().last()->result(), kOff);
    page.setSmartAppControlOn(true);
    QCOMPARE(page.rows().last()->result(), kOn);
    page.startReveal();
    QTRY_COMPARE_WITH_TIMEOUT(watch.shots().size(), 10, kPatience);
    clock.pass(150);
    QVERIFY(page.warning()->isVisible());
    page.setSmartAppControlOn(false);
    QCOMPARE(page.rows().last()->result(), kOff);
    QVERIFY(!page.warning()->isVisible());
    clock.pass(500); // its animation has been stopped, not only set back
    QVERIFY(!page.warning()->isVisible());
}

void TestSystemCheckPage::smartAppControlWithoutRows()
{
    TimerWatch watch;
    SystemCheckPage page;
    page.setSmartAppControlOn(true);
    QCOMPARE(page.checkCount(), 0);
    page.startReveal();
    QTRY_COMPARE(watch.shots(), QList<int> { 160 });
}

void TestSystemCheckPage::followsTheTheme()
{
    const auto showWarning = [](const ShownPage &page) {
        page.findChild<QGraphicsOpacityEffect *>()->setOpacity(1.0);
        return grabWidget(*page.warning());
    };
    const ShownPage page;
    const QImage light = showWarning(page);
    ThemeManager::instance().setDarkMode(true);
    QCOMPARE(showWarning(page), showWarning(ShownPage()));
    QVERIFY(showWarning(page) != light);
}

void TestSystemCheckPage::fits_data()
{
    QTest::addColumn<QFont>("font");
    QFont font = QApplication::font();
    QTest::newRow("as here") << font;
    font.setPointSize(11);
    QTest::newRow("11 pt") << font;
    font.setPixelSize(20);
    QTest::newRow("20 px") << font;
}

// The page sets sizes of its own, whatever the default font of the desktop is.
void TestSystemCheckPage::fits()
{
    QFETCH(const QFont, font);
    const QFont before = QApplication::font();
    QApplication::setFont(font);
    qputenv("VARNEL_REDUCED_MOTION", "1"); // everything appears at once
    const auto restore = qScopeGuard([&before] {
        qunsetenv("VARNEL_REDUCED_MOTION");
        QApplication::setFont(before);
    });
    recordSmartAppControl(1);
    ShownPage page;
    page.startReveal();
    QVERIFY(page.warning()->isVisible());
    QVERIFY(fitsWindow(&page));
    QCOMPARE(page.warning()->fontInfo().pixelSize(), 12);
    QVERIFY(page.warning()->heightForWidth(page.warning()->width()) <= page.warning()->height());
    // Nothing else has been squeezed for it.
    const int height = page.heightForWidth(kPageSize.width());
    QVERIFY(height > 0 && height <= kPageSize.height());
}

QTEST_MAIN(TestSystemCheckPage)
#include "tst_systemcheckpage.moc"
