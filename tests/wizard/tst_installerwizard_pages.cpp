// What the pages are told before they are shown, and what becomes of them when they are left.

#include "pages/checkrow.h"
#include "pages/destinationpage.h"
#include "pages/folderchooser.h"
#include "pages/manualclock.h"
#include "pages/pagetext.h"
#include "support/grab.h"
#include "theme/themed.h"
#include "widgets/look.h"
#include "wizard/installerpane.h"
#include "wizard/wizardtest.h"

#include <QDir>
#include <QFileInfo>
#include <QGraphicsOpacityEffect>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

bool goToSystemCheck(WizardDriver &driver)
{
    driver.show(RunMode::Install);
    return driver.press(u"Next"_s) && driver.click(kAccept) && driver.press(u"Next"_s)
        && driver.shows("SystemCheckPage");
}

} // namespace

class TestInstallerWizardPages : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void systemCheckRunsOnEntering();
    void systemCheckStopsOnLeaving();
    void findingsStayVisibleWhileTheirPageFades();
    void choicesReachSummaryAndEngine();
    void updateOfferTellsTheVersions_data();
    void updateOfferTellsTheVersions();
    void uninstallTellsTheVersion();
};

// It informs and does not gate: nothing here has a runtime for Windows programs, and Next is
// enabled.
void TestInstallerWizardPages::systemCheckRunsOnEntering()
{
    WizardDriver driver;
    QVERIFY(goToSystemCheck(driver));
    const auto rowsOf = [&driver] {
        return driver.currentPage()->findChildren<SystemCheckPage::CheckRow *>();
    };
    auto rows = rowsOf();
    QCOMPARE(rows.size(), 9);
    QVERIFY(std::any_of(rows.begin(), rows.end(), [](auto *row) { return !row->result().ok; }));
    QVERIFY(driver.button(u"Next"_s)->isEnabled());
    QTRY_COMPARE_WITH_TIMEOUT(rows.last()->reveal(), 1.0, kPatience);

#ifdef Q_OS_LINUX
    // The disk that is probed is that of the folder that is chosen by now.
    QVERIFY(driver.press(u"Next"_s));
    driver.find<DestinationPage>()->setPath(u"/proc"_s);
    QVERIFY(driver.press(u"Back"_s));
    QTRY_COMPARE_WITH_TIMEOUT(rowsOf().size(), 9, kPatience);
    rows = rowsOf();
    QVERIFY(std::any_of(rows.begin(), rows.end(),
                        [](auto *row) { return row->result().value.endsWith(u" on /proc"_s); }));
#endif
}

void TestInstallerWizardPages::systemCheckStopsOnLeaving()
{
    WizardDriver driver;
    QVERIFY(goToSystemCheck(driver));
    const auto rows = driver.currentPage()->findChildren<SystemCheckPage::CheckRow *>();
    QTRY_VERIFY_WITH_TIMEOUT(rows.first()->reveal() > 0.0, kPatience);
    QVERIFY(driver.press(u"Next"_s));
    driver.watch.clear();
    QTest::qWait(1100);
    for (const auto *row : rows)
        QVERIFY(row->reveal() == 0.0 && !row->isRevealed());
    for (int delay : { 230, 560, 1000 })
        QVERIFY(!driver.watch.shots().contains(delay));
}

// They are hidden at once, but the picture of the page that fades out still has them.
void TestInstallerWizardPages::findingsStayVisibleWhileTheirPageFades()
{
    ManualClock clock;
    WizardDriver driver;
    QVERIFY(goToSystemCheck(driver));
    QWidget *page = driver.currentPage();
    clock.pass(320);
    const auto rows = page->findChildren<SystemCheckPage::CheckRow *>();
    QTRY_VERIFY_WITH_TIMEOUT(rows.last()->isRevealed(), kPatience);
    clock.pass(300);

    const QImage before = grabWidget(*driver.pane);
    QVERIFY(driver.press(u"Back"_s));
    for (const auto *row : rows)
        QCOMPARE(row->reveal(), 0.0);
    QVERIFY(grabWidget(*driver.pane) == before);
    clock.pass(60);
    // Of each badge, eight pixels from the left, there is as much as of the whole page.
    const auto *effect = qobject_cast<QGraphicsOpacityEffect *>(page->graphicsEffect());
    QVERIFY(effect && effect->opacity() > 0.2 && effect->opacity() < 0.8);
    const QImage picture = grabWidget(*driver.pane);
    for (const auto *row : rows) {
        const QPointF badge = row->mapTo(driver.pane, QPoint(1, row->height() / 2));
        const QColor full = colourAt(before, badge - page->pos());
        QVERIFY(full != themedColor(u"@INS_BG"_s));
        QCOMPARE(difference(colourAt(picture, badge),
                            blended(full, effect->opacity(), themedColor(u"@INS_BG"_s)), 3),
                 QString());
    }
}

void TestInstallerWizardPages::choicesReachSummaryAndEngine()
{
    WizardDriver driver;
    const QString usual = driver.sandbox.nativePath(u"programs/Varnel Schematics"_s);
    const QString folder = driver.sandbox.nativePath(Sandbox::oddName());
    QVERIFY(QDir().mkpath(folder));
    const auto summaryIs = [&driver](const QString &path, const QString &tasks) {
        for (const QLabel *label : driver.currentPage()->findChildren<QLabel *>()) {
            if (shownText(label)
                == u"Destination location:\n%1\n\nAdditional tasks:\n%2"_s.arg(path, tasks))
                return true;
        }
        return false;
    };
    driver.show(RunMode::Install);
    QVERIFY(driver.goToReadyPage());
    QVERIFY(summaryIs(usual, kShortcut));

    QVERIFY(driver.press(u"Back"_s));
    QVERIFY(driver.click(kShortcut));
    QVERIFY(driver.press(u"Back"_s));
    chooseFolder(driver.currentPage()->findChild<QPushButton *>(), folder);
    QVERIFY(driver.pressAll({ u"Back"_s, u"Back"_s, u"Back"_s }));
    QVERIFY(driver.pressAll({ u"Next"_s, u"Next"_s, u"Next"_s, u"Next"_s, u"Next"_s }));
    QVERIFY(summaryIs(folder, u"(none)"_s));

    QVERIFY(driver.press(u"Install"_s));
    QVERIFY(driver.comesTo("FinishedPage"));
    QVERIFY(QFileInfo::exists(folder + u"/VarnelSolutions.exe"));
    QVERIFY(driver.sandbox.engineRuns().first().contains(u"/DIR="_s + folder));
    QVERIFY(driver.sandbox.engineRuns().first().contains(u"/TASKS="_s));
    QVERIFY(QDir(driver.sandbox.path(u"desktop"_s)).isEmpty());
    QVERIFY(labelOf(driver.currentPage(), u"Installed to "_s + folder + u'.'));
}

void TestInstallerWizardPages::updateOfferTellsTheVersions_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("location");
    QTest::addColumn<QString>("installedText");
    QTest::addColumn<QString>("folder");
    QTest::newRow("recorded") << u"1.6.8"_s << u"/opt/varnel/"_s << u"Installed 1.6.8"_s
                              << u"/opt/varnel"_s;
    // The engine makes the product's folder there.
    QTest::newRow("root of a drive, roundabout")
        << u"1.6.8"_s << uR"(D:\Tools\..\)"_s << u"Installed 1.6.8"_s << u"D:/Varnel Schematics"_s;
    QTest::newRow("markup") << kLiteral << u"/opt/a&b <i>%2"_s << u"Installed "_s + kLiteral
                            << u"/opt/a&b <i>%2"_s;
    QTest::newRow("nothing recorded") << QString() << QString() << u"Installed not found"_s
                                      << u"C:/Program Files/Varnel Schematics"_s;
}

void TestInstallerWizardPages::updateOfferTellsTheVersions()
{
    QFETCH(QString, version);
    QFETCH(QString, location);
    QFETCH(QString, installedText);
    QFETCH(QString, folder);
    WizardDriver driver;
    driver.sandbox.recordInstallation(version, location);
    driver.show(RunMode::Update);
    const auto texts = [&driver] {
        QStringList result;
        for (const QLabel *label : driver.currentPage()->findChildren<QLabel *>())
            result.append(shownText(label));
        return result;
    };
    QVERIFY(texts().contains(installedText));
    QVERIFY(texts().contains(u"Available 1.6.9"_s));

    QVERIFY(driver.press(u"Update Now"_s));
    QVERIFY(texts().contains(u"Setup will update Varnel Schematics to version 1.6.9."_s));
    folder = version.isEmpty() ? folder.replace(u'/', u'\\') : QDir::toNativeSeparators(folder);
    QVERIFY2(texts().contains(u"Destination location:\n"_s + folder
                              + u"\n\nYour preferences and license will be kept."),
             qPrintable(texts().join(u'|')));
}

void TestInstallerWizardPages::uninstallTellsTheVersion()
{
    WizardDriver driver;
    driver.show(RunMode::Uninstall);
    QVERIFY(
        labelOf(driver.currentPage(), u"This will remove Varnel Schematics from your computer."_s));
    driver.sandbox.recordInstallation(u"1.6.8"_s, u"/opt/varnel"_s);
    driver.wizard.setRunMode(RunMode::Uninstall);
    QVERIFY(labelOf(driver.currentPage(),
                    u"This will remove Varnel Schematics 1.6.8 from your computer."_s));
}

QTEST_MAIN(TestInstallerWizardPages)
#include "tst_installerwizard_pages.moc"
