#include "app/applicationfonts.h"
#include "pages/checkrow.h"
#include "pages/desktopfonts.h"
#include "pages/layoutoutline.h"
#include "pages/manualclock.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "pages/systemcheckpage.h"
#include "pages/timerwatch.h"
#include "support/sandbox.h"
#include "theme/thememanager.h"

#include <QGraphicsOpacityEffect>
#include <QJsonObject>
#include <QPointer>
#include <QSignalSpy>
#include <QStorageInfo>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

using CheckRow = SystemCheckPage::CheckRow;

const QString kWarning =
    u"Smart App Control will block Varnel Schematics from starting. Turn it off in Windows "
    "Security › App & Browser Control, then restart."_s;

const QStringList kLabels {
    u"Operating system"_s,   u"Processor"_s,          u"Memory"_s,
    u"Disk space"_s,         u"Graphics · display"_s, u".NET Framework"_s,
    u"Visual C++ Runtime"_s, u"WebView2 Runtime"_s,   u"Smart App Control"_s,
};

constexpr int kLastShot = 1000; // ms, of the last of nine rows
constexpr int kWarningShot = 1150;

/// The rows on the page, from top to bottom.
QList<CheckRow *> rowsOf(const SystemCheckPage &page)
{
    const auto *container = qobject_cast<QWidget *>(page.layout()->itemAt(4)->widget());
    QList<CheckRow *> rows;
    for (QWidget *widget : layoutWidgets(container->layout()))
        rows.append(qobject_cast<CheckRow *>(widget));
    return rows;
}

QLabel *warningOf(const SystemCheckPage &page)
{
    return labelOf(&page, kWarning);
}

double warningOpacity(const SystemCheckPage &page)
{
    return qobject_cast<QGraphicsOpacityEffect *>(warningOf(page)->graphicsEffect())->opacity();
}

QList<int> rowShots()
{
    return { 120, 230, 340, 450, 560, 670, 780, 890, kLastShot };
}

} // namespace

class TestSystemCheckPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void layout();
    void warningLabel();
    void runMakesNineHiddenRows();
    void folderIsProbed_data();
    void folderIsProbed();
    void secondRunReplacesTheRows();
    void rowsComeOneAfterAnother();
    void warningComesAfterTheRows();
    void warningOnlyIfThereIsCause();
    void warningFollowsTheLastRun();
    void resetHidesEverything();
    void resetVoidsPendingStarts();
    void newRunVoidsPendingStarts();
    void smartAppControlCanBeSet();
    void smartAppControlSwitchedOffTakesTheWarningAway();
    void smartAppControlWithoutRows();
    void fits_data() { addDesktopFonts(); }
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

void TestSystemCheckPage::layout()
{
    SystemCheckPage page;
    QCOMPARE(layoutOutline(&page),
             (QStringList {
                 u"margins 22 18 22 18, spacing 0"_s,
                 u"label: Checking your system"_s,
                 u"gap 5"_s,
                 u"label: Verifying the requirements so you don't have to read them."_s,
                 u"gap 12"_s,
                 u"QWidget"_s,
                 u"gap 4"_s,
                 u"label: "_s + kWarning,
                 u"stretch"_s,
             }));
    QVERIFY(page.layout()->itemAt(4)->widget()->layout()->contentsMargins().isNull());
    QCOMPARE(page.checkCount(), 0);
}

void TestSystemCheckPage::warningLabel()
{
    SystemCheckPage page;
    QVERIFY(warningOf(page)->wordWrap());
    QCOMPARE(warningOpacity(page), 0.0);
    for (bool dark : { false, true }) {
        ThemeManager::instance().setDarkMode(dark);
        QCOMPARE(
            warningOf(page)->styleSheet(),
            coloured(u"font-size:11.5px;color:%1;border-left:2px solid %2;padding-left:11px;"_s,
                     { u"@INS_TX2"_s, u"@INS_WARN"_s }));
    }
}

void TestSystemCheckPage::runMakesNineHiddenRows()
{
    SystemCheckPage page;
    page.resize(kPageSize);
    page.show();
    page.runChecks(m_sandbox.path({}));
    QCOMPARE(page.checkCount(), 9);
    QStringList labels;
    for (const CheckRow *row : rowsOf(page)) {
        labels.append(row->result().label);
        QVERIFY(row->isVisible());
        QCOMPARE(row->reveal(), 0.0);
    }
    QCOMPARE(labels, kLabels);
}

void TestSystemCheckPage::folderIsProbed_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("volumeOf");
    QTest::newRow("existing folder") << m_sandbox.path({}) << m_sandbox.path({});
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
    SystemCheckPage page;
    page.runChecks(folder);
    const QString value = rowsOf(page).at(3)->result().value;
    const QString volume = QDir::toNativeSeparators(QStorageInfo(volumeOf).rootPath());
    QVERIFY2(value.endsWith(u" on "_s + volume), qPrintable(value));
}

void TestSystemCheckPage::secondRunReplacesTheRows()
{
    SystemCheckPage page;
    page.resize(kPageSize);
    page.show();
    page.runChecks({});
    QList<QPointer<CheckRow>> old;
    for (CheckRow *row : rowsOf(page)) {
        row->setReveal(1.0);
        old.append(row);
    }
    page.runChecks({});
    // Off the screen and out of the layout at once, though perhaps not deleted yet.
    for (const QPointer<CheckRow> &row : old)
        QVERIFY(!row || (!row->isVisible() && !rowsOf(page).contains(row)));
    QCOMPARE(page.checkCount(), 9);
    QCOMPARE(rowsOf(page).size(), 9);
    for (const QPointer<CheckRow> &row : old)
        QTRY_VERIFY(!row);
    QCOMPARE(page.findChildren<CheckRow *>().size(), 9);
    QCOMPARE(rowsOf(page).first()->reveal(), 0.0);
}

void TestSystemCheckPage::rowsComeOneAfterAnother()
{
    ManualClock clock;
    TimerWatch watch;
    SystemCheckPage page;
    page.runChecks({});
    const QList<CheckRow *> rows = rowsOf(page);
    page.startReveal();
    for (qsizetype i = 0; i < rows.size(); ++i) {
        QTRY_VERIFY_WITH_TIMEOUT(watch.shots().size() == i + 1, 10'000);
        for (qsizetype j = 0; j < rows.size(); ++j)
            QCOMPARE(rows[j]->isRevealed(), j <= i);
        QCOMPARE(rows[i]->reveal(), 0.0);
    }
    QCOMPARE(watch.shots(), rowShots());
    clock.pass(300);
    for (const CheckRow *row : rows)
        QCOMPARE(row->reveal(), 1.0);
}

void TestSystemCheckPage::warningComesAfterTheRows()
{
    recordSmartAppControl(1);
    ManualClock clock;
    TimerWatch watch;
    SystemCheckPage page;
    page.resize(kPageSize);
    page.show();
    page.runChecks({});
    QCOMPARE(rowsOf(page).last()->result(),
             (CheckResult { u"Smart App Control"_s, u"On — blocks the app"_s, false }));
    page.startReveal();
    QTRY_VERIFY_WITH_TIMEOUT(watch.shots().contains(kWarningShot), 10'000);
    QCOMPARE(watch.shots(), rowShots() << kWarningShot);
    QCOMPARE(warningOpacity(page), 0.0);
    clock.pass(200);
    QVERIFY(warningOpacity(page) > 0.3 && warningOpacity(page) < 1.0);
    clock.pass(190);
    QVERIFY(warningOpacity(page) < 1.0);
    clock.pass(10);
    QCOMPARE(warningOpacity(page), 1.0);
    QVERIFY(warningOf(page)->isVisible());
}

void TestSystemCheckPage::warningOnlyIfThereIsCause()
{
    recordSmartAppControl(2);
    TimerWatch watch;
    SystemCheckPage page;
    page.runChecks({});
    page.startReveal();
    QTimer last;
    last.setSingleShot(true);
    QSignalSpy spy(&last, &QTimer::timeout);
    last.start(kWarningShot + 150);
    QVERIFY(spy.wait(10'000));
    QVERIFY(!watch.shots().contains(kWarningShot));
    QCOMPARE(warningOpacity(page), 0.0);
}

void TestSystemCheckPage::warningFollowsTheLastRun()
{
    recordSmartAppControl(1);
    ManualClock clock;
    TimerWatch watch;
    SystemCheckPage page;
    page.resize(kPageSize);
    page.show();
    page.runChecks({});
    page.startReveal();
    QTRY_VERIFY_WITH_TIMEOUT(watch.shots().contains(kWarningShot), 10'000);
    clock.pass(400);
    QCOMPARE(warningOpacity(page), 1.0);

    recordSmartAppControl(0);
    page.runChecks({});
    QCOMPARE(warningOpacity(page), 0.0);
    watch.clear();
    page.startReveal();
    QTRY_VERIFY_WITH_TIMEOUT(watch.shots().contains(kLastShot), 10'000);
    QCOMPARE(watch.shots(), rowShots());
    clock.pass(400);
    QCOMPARE(warningOpacity(page), 0.0);
}

void TestSystemCheckPage::resetHidesEverything()
{
    recordSmartAppControl(1);
    ManualClock clock;
    TimerWatch watch;
    SystemCheckPage page;
    page.runChecks({});
    page.startReveal();
    QTRY_VERIFY_WITH_TIMEOUT(watch.shots().contains(kWarningShot), 10'000);
    clock.pass(150);
    QVERIFY(rowsOf(page).first()->reveal() > 0.0);
    QVERIFY(warningOpacity(page) > 0.0);
    page.resetReveal();
    const auto allHidden = [&] {
        for (const CheckRow *row : rowsOf(page)) {
            if (row->reveal() != 0.0 || row->isRevealed())
                return false;
        }
        return warningOpacity(page) == 0.0;
    };
    QVERIFY(allHidden());
    clock.pass(500); // the animations have been stopped, not only set back
    QVERIFY(allHidden());
    QCOMPARE(page.checkCount(), 9);

    watch.clear();
    page.startReveal();
    QTRY_VERIFY_WITH_TIMEOUT(watch.shots().contains(kWarningShot), 10'000);
    clock.pass(400);
    QCOMPARE(warningOpacity(page), 1.0);
    QCOMPARE(rowsOf(page).last()->reveal(), 1.0);
}

void TestSystemCheckPage::resetVoidsPendingStarts()
{
    recordSmartAppControl(1);
    TimerWatch watch;
    SystemCheckPage page;
    page.runChecks({});
    page.startReveal();
    QTRY_VERIFY_WITH_TIMEOUT(watch.shots().contains(230), 10'000);
    page.resetReveal();
    watch.clear();
    QTimer last;
    last.setSingleShot(true);
    QSignalSpy spy(&last, &QTimer::timeout);
    last.start(kWarningShot + 150);
    QVERIFY(spy.wait(10'000));
    QCOMPARE(watch.shots(), QList<int> { kWarningShot + 150 });
    for (const CheckRow *row : rowsOf(page))
        QCOMPARE(row->reveal(), 0.0);
    QCOMPARE(warningOpacity(page), 0.0);
}

// Also without a reset in between, an old start neither reaches a new row nor brings the warning.
void TestSystemCheckPage::newRunVoidsPendingStarts()
{
    recordSmartAppControl(1);
    TimerWatch watch;
    SystemCheckPage page;
    page.runChecks({});
    page.startReveal();
    recordSmartAppControl(0);
    page.runChecks({});
    QTimer last;
    last.setSingleShot(true);
    QSignalSpy spy(&last, &QTimer::timeout);
    last.start(kWarningShot + 150);
    QVERIFY(spy.wait(10'000));
    QCOMPARE(watch.shots(), QList<int> { kWarningShot + 150 });
    QCOMPARE(warningOpacity(page), 0.0);
}

void TestSystemCheckPage::smartAppControlCanBeSet()
{
    ManualClock clock;
    TimerWatch watch;
    SystemCheckPage page;
    page.resize(kPageSize);
    page.show();
    page.runChecks({});
    page.setSmartAppControlOn(true);
    QCOMPARE(rowsOf(page).last()->result(),
             (CheckResult { u"Smart App Control"_s, u"On — blocks the app"_s, false }));
    page.startReveal();
    QTRY_VERIFY_WITH_TIMEOUT(watch.shots().contains(kWarningShot), 10'000);
    clock.pass(400);
    QCOMPARE(warningOpacity(page), 1.0);

    page.resetReveal();
    page.setSmartAppControlOn(false);
    QCOMPARE(rowsOf(page).last()->result(),
             (CheckResult { u"Smart App Control"_s, u"Off"_s, true }));
    watch.clear();
    page.startReveal();
    QTRY_VERIFY_WITH_TIMEOUT(watch.shots().contains(kLastShot), 10'000);
    QCOMPARE(watch.shots(), rowShots());
}

void TestSystemCheckPage::smartAppControlSwitchedOffTakesTheWarningAway()
{
    recordSmartAppControl(1);
    ManualClock clock;
    TimerWatch watch;
    SystemCheckPage page;
    page.resize(kPageSize);
    page.show();
    page.runChecks({});
    page.startReveal();
    QTRY_VERIFY_WITH_TIMEOUT(watch.shots().contains(kWarningShot), 10'000);
    clock.pass(150);
    QVERIFY(warningOpacity(page) > 0.0);
    page.setSmartAppControlOn(false);
    QCOMPARE(warningOpacity(page), 0.0);
    QVERIFY(!warningOf(page)->isVisible());
    clock.pass(400); // it does not go on either
    QCOMPARE(warningOpacity(page), 0.0);
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

void TestSystemCheckPage::fits()
{
    QFETCH(const QFont, font);
    const DesktopFont desktop(font);
    qputenv("VARNEL_REDUCED_MOTION", "1"); // all of it is there at once
    const auto restore = qScopeGuard([] { qunsetenv("VARNEL_REDUCED_MOTION"); });
    recordSmartAppControl(1);
    SystemCheckPage page;
    page.runChecks({});
    page.startReveal();
    QVERIFY(!warningOf(page)->isHidden());
    QVERIFY(fitsWindow(&page));
    QVERIFY(isWholeAt(warningOf(page), 12));
    // Nothing has been squeezed for it either.
    const int height = page.heightForWidth(kPageSize.width());
    QVERIFY(height > 0 && height <= kPageSize.height());
}

QTEST_MAIN(TestSystemCheckPage)
#include "tst_systemcheckpage.moc"
