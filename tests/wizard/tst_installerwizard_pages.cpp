// What the pages are told before they are shown, and what becomes of them when they are left.

#include "pages/checkrow.h"
#include "pages/destinationpage.h"
#include "pages/folderchooser.h"
#include "pages/pagetext.h"
#include "wizard/wizardtest.h"

#include <QDir>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

class TestInstallerWizardPages : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void systemCheck();
    void choicesReachSummaryAndEngine();
    void updateOfferTellsTheVersions_data();
    void updateOfferTellsTheVersions();
    void uninstallTellsTheVersion();
};

// It informs and does not gate: nothing here has a runtime for Windows programs, and Next is
// enabled. Its findings stop coming when it is left.
void TestInstallerWizardPages::systemCheck()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    QVERIFY(driver.press(u"Next"_s) && driver.click(kAccept) && driver.press(u"Next"_s));
    auto *page = qobject_cast<SystemCheckPage *>(driver.currentPage());
    QVERIFY(page);
    const auto every = [page](auto &&condition) {
        const auto rows = page->findChildren<SystemCheckPage::CheckRow *>();
        return std::all_of(rows.begin(), rows.end(), condition);
    };
    const auto isUnseen = [](auto *row) { return row->reveal() == 0.0 && !row->isRevealed(); };
    QVERIFY(!every([](auto *row) { return row->result().ok; }));
    QTRY_VERIFY_WITH_TIMEOUT(!every(isUnseen), kPatience);
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(driver.shows("DestinationPage"));
    driver.watch.clear();
    QTest::qWait(1100);
    QVERIFY(every(isUnseen));
    for (int delay : { 230, 560, 1000 })
        QVERIFY(!driver.watch.shots().contains(delay));

#ifdef Q_OS_LINUX
    // The disk that is probed is that of the folder that is chosen by now.
    driver.find<DestinationPage>()->setPath(u"/proc"_s);
    QVERIFY(driver.press(u"Back"_s));
    QTRY_VERIFY_WITH_TIMEOUT(every([](auto *row) { return row->reveal() == 1.0; }), kPatience);
    QVERIFY(!every([](auto *row) { return !row->result().value.endsWith(u" on /proc"_s); }));
#endif
}

void TestInstallerWizardPages::choicesReachSummaryAndEngine()
{
    WizardDriver driver;
    const QString usual = driver.sandbox.nativePath(u"programs/Varnel Schematics"_s);
    const QString folder = driver.sandbox.nativePath(Sandbox::oddName());
    QVERIFY(QDir().mkpath(folder));
    const auto summaryIs = [&driver](const QString &path, const QString &tasks) {
        return labelOf(driver.currentPage(),
                       u"Destination location:\n%1\n\nAdditional tasks:\n%2"_s.arg(path, tasks));
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
    QVERIFY(driver.sandbox.engineRuns().first().contains(u"/DIR="_s + folder));
    QVERIFY(driver.sandbox.engineRuns().first().contains(u"/TASKS="_s));
    QVERIFY(labelOf(driver.currentPage(), u"Installed to "_s + folder + u'.'));
}

void TestInstallerWizardPages::updateOfferTellsTheVersions_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("location");
    QTest::addColumn<QString>("installedText");
    QTest::addColumn<QString>("folder");
    // The engine makes the product's folder there.
    QTest::newRow("root of a drive, roundabout")
        << u"1.6.8"_s << uR"(D:\Tools\..\)"_s << u"Installed 1.6.8"_s << u"D:/Varnel Schematics"_s;
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
    const auto shows = [&driver](const QString &text) {
        return labelOf(driver.currentPage(), text) != nullptr;
    };
    QVERIFY(shows(installedText));
    QVERIFY(shows(u"Available 1.6.9"_s));

    QVERIFY(driver.press(u"Update Now"_s));
    folder = version.isEmpty() ? folder.replace(u'/', u'\\') : QDir::toNativeSeparators(folder);
    QVERIFY(shows(u"Destination location:\n"_s + folder
                  + u"\n\nYour preferences and license will be kept."));
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
