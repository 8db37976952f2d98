// The window and its pages before a run, also in a download, which carries its engine. What stands
// where is recorded by tst_pagestructure.

#include "bundle/bundlefile.h"
#include "bundle/carriedengine.h"
#include "pages/checkrow.h"
#include "pages/destinationpage.h"
#include "pages/folderchooser.h"
#include "pages/manualclock.h"
#include "pages/pagetext.h"
#include "widgets/animatedmark.h"
#include "wizard/installerfooterbar.h"
#include "wizard/installertitlebar.h"
#include "wizard/wizardtest.h"

#include <QDir>
#include <QGraphicsEffect>
#include <QPointer>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A window with a carried engine of 3 MB that has not been started.
struct Download : WizardDriver
{
    BundleFile file { sandbox, 3 * 1024 * 1024 };
    CarriedEngine carried { file.path, file.bundle };

    Download() : WizardDriver(QString()) { wizard.setCarriedEngine(&carried); }

    [[nodiscard]] bool isUnpacking() const { return !sandbox.tempFiles().isEmpty(); }
};

} // namespace

class TestInstallerWizard : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void window();
    void firstPageComesIn_data() { addModes(); }
    void firstPageComesIn();
    void clicksBeforeTheWindowIsOnScreen();
    void nextNeedsAnAcceptedLicense();
    void doubleClickPressesOneButton();
    void systemCheck();
    void choicesReachSummaryAndEngine();
    void updateOfferTellsTheVersions();
    void unpackingBeginsAfterTheFirstPage();
    void removalUnpacksNothingAndIsNotSimulated();
    void runWaitsForTheEngine();
};

void TestInstallerWizard::window()
{
    WizardDriver driver;
    QCOMPARE(driver.wizard.windowFlags() & (Qt::WindowType_Mask | Qt::FramelessWindowHint),
             Qt::Window | Qt::FramelessWindowHint);
    QVERIFY(driver.wizard.testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(driver.wizard.minimumSize(), driver.wizard.maximumSize());
    driver.wizard.show(); // needs no mode
    QVERIFY(driver.comesTo("WelcomePage"));
}

// Twice, the second time when the window is on screen, so that its entrance is seen.
void TestInstallerWizard::firstPageComesIn()
{
    QFETCH(RunMode, mode);
    ManualClock clock; // holds what moves until it has been looked at
    WizardDriver driver;
    driver.mark->setFill(0.4);
    driver.mark->setA1Progress(1.0);
    driver.wizard.setRunMode(mode);
    QCOMPARE(driver.wizard.windowTitle(), driver.titleBar->findChild<QLabel *>()->text());
    QCOMPARE(driver.mark->fill(), 1.0);
    QCOMPARE(driver.mark->a1Progress(), 0.0); // its entrance begins
    const QPointer<QPushButton> first = driver.footer->buttons().last();
    driver.wizard.show();
    QTRY_VERIFY_WITH_TIMEOUT(!first, kPatience);
    QVERIFY(driver.currentPage()->graphicsEffect());
    QVERIFY(driver.currentPage()->isVisible());
    const auto hasComeIn = [&] {
        clock.pass(100);
        return !driver.currentPage()->graphicsEffect() && driver.mark->a4Progress() == 1.0
            && driver.mark->driftOffset() != 0.0; // it floats
    };
    QTRY_VERIFY_WITH_TIMEOUT(hasComeIn(), kPatience);

    const QPointer<QPushButton> last = driver.footer->buttons().last();
    driver.wizard.hide();
    driver.wizard.show(); // a later one changes nothing
    WizardDriver::settle();
    QCOMPARE(driver.footer->buttons().last(), last);
    last->click();
    QCOMPARE(driver.mark->a4Progress(), 1.0); // the entrance is not played again
}

// The window enters its first page again once it is on screen.
void TestInstallerWizard::clicksBeforeTheWindowIsOnScreen()
{
    WizardDriver driver;
    driver.sandbox.setScenario("delay-ms = 20\n"); // long enough to be looked at
    driver.wizard.setRunMode(RunMode::Update);
    driver.wizard.show();
    driver.button(u"Update Now"_s)->click();
    driver.button(u"Update"_s)->click();
    QTest::qWait(100); // the first page would have been entered again by then
    QVERIFY(driver.shows("UpdatingPage"));
    QVERIFY(driver.comesTo("UpdateFinishedPage"));
    QCOMPARE(driver.sandbox.engineRuns().size(), 1);
}

void TestInstallerWizard::nextNeedsAnAcceptedLicense()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(!driver.press(u"Next"_s));
    for (const QString &answer : { kAccept, kDecline, kAccept, kDecline }) {
        QVERIFY(driver.click(answer));
        QCOMPARE(driver.button(u"Next"_s)->isEnabled(), answer == kAccept);
        // The answer is kept.
        QVERIFY(driver.pressAll({ u"Back"_s, u"Next"_s }));
        QVERIFY(driver.shows("LicensePage"));
        QCOMPARE(driver.button(u"Next"_s)->isEnabled(), answer == kAccept);
    }
}

// The second click would press the button that appears in the same place.
void TestInstallerWizard::doubleClickPressesOneButton()
{
    WizardDriver driver;
    driver.show(RunMode::Update);
    const QPushButton *button = driver.button(u"Update Now"_s);
    const QPoint place = button->mapTo(&driver.wizard, button->rect().center());
    QTest::mouseDClick(driver.wizard.windowHandle(), Qt::LeftButton, {}, place);
    QVERIFY(driver.shows("ReadyToUpdatePage"));
    QTest::mouseClick(driver.wizard.windowHandle(), Qt::LeftButton, {}, place);
    QVERIFY(driver.shows("UpdatingPage"));
}

// It informs and does not gate: nothing here has a runtime for Windows programs, and Next is
// enabled. Its findings stop coming when it is left.
void TestInstallerWizard::systemCheck()
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
    QVERIFY(every(isUnseen));

#ifdef Q_OS_LINUX
    // The disk that is probed is that of the folder that is chosen by now.
    driver.find<DestinationPage>()->setPath(u"/proc"_s);
    QVERIFY(driver.press(u"Back"_s));
    QVERIFY(!every([](auto *row) { return !row->result().value.endsWith(u" on /proc"_s); }));
#endif
}

void TestInstallerWizard::choicesReachSummaryAndEngine()
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

void TestInstallerWizard::updateOfferTellsTheVersions()
{
    WizardDriver driver;
    const auto shows = [&driver](const QString &text) {
        return labelOf(driver.currentPage(), text) != nullptr;
    };
    const QString summary =
        u"Destination location:\n%1\n\nYour preferences and license will be kept."_s;
    driver.show(RunMode::Update);
    QVERIFY(shows(u"Installed not found"_s));
    QVERIFY(driver.press(u"Update Now"_s));
    QVERIFY(shows(summary.arg(uR"(C:\Program Files\Varnel Schematics)"_s)));

    // In the root of a drive, roundabout; the engine makes the product's folder there.
    driver.sandbox.recordInstallation(u"1.6.8"_s, uR"(D:\Tools\..\)"_s);
    QVERIFY(driver.press(u"Back"_s));
    QVERIFY(shows(u"Installed 1.6.8"_s));
    QVERIFY(shows(u"Available 1.6.9"_s));
    QVERIFY(driver.press(u"Update Now"_s));
    QVERIFY(shows(summary.arg(QDir::toNativeSeparators(u"D:/Varnel Schematics"_s))));
}

void TestInstallerWizard::unpackingBeginsAfterTheFirstPage()
{
    Download driver;
    driver.show(RunMode::Install);
    QVERIFY(!driver.isUnpacking());
    QTRY_VERIFY(driver.isUnpacking());
    QVERIFY(driver.shows("WelcomePage"));
}

void TestInstallerWizard::removalUnpacksNothingAndIsNotSimulated()
{
    Download driver;
    driver.show(RunMode::Uninstall);
    QTest::qWait(2000);
    QVERIFY(driver.press(u"Uninstall"_s));
    QCOMPARE(driver.progress().caption->text(), u"The uninstaller could not be found."_s);
    QVERIFY(!driver.isUnpacking());
}

// The carried engine is only noise, so starting it fails and ends the run.
void TestInstallerWizard::runWaitsForTheEngine()
{
    Download driver;
    QVERIFY(driver.startRun(RunMode::Update));
    QVERIFY(!driver.carried.isFinished());
    QVERIFY(driver.shows("UpdatingPage"));
    QTRY_COMPARE_WITH_TIMEOUT(driver.status(), u"Setup could not finish"_s, kPatience);
    QVERIFY(driver.carried.isFinished());
    QCOMPARE(driver.engine.setupExecutable(), driver.carried.path());
}

QTEST_MAIN(TestInstallerWizard)
#include "tst_installerwizard.moc"
