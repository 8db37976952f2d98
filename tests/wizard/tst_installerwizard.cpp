// The window and its pages before a run. What stands where is recorded by tst_pagestructure.

#include "pages/manualclock.h"
#include "widgets/animatedmark.h"
#include "wizard/installerfooterbar.h"
#include "wizard/installertitlebar.h"
#include "wizard/wizardtest.h"

#include <QElapsedTimer>
#include <QGraphicsEffect>
#include <QPointer>
#include <QSignalSpy>

using namespace Qt::Literals::StringLiterals;

class TestInstallerWizard : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void window();
    void firstPages_data();
    void firstPages();
    void markIsResetOnEveryPage();
    void firstShowEntersTheFirstPageOnceMore();
    void laterShowsChangeNothing();
    void clicksBeforeTheWindowIsOnScreen();
    void nextNeedsAnAcceptedLicense();
    void doubleClickPressesOneButton();
    void closes();
    void closesDuringARun_data();
    void closesDuringARun();
};

void TestInstallerWizard::window()
{
    WizardDriver driver;
    QCOMPARE(driver.wizard.windowFlags() & (Qt::WindowType_Mask | Qt::FramelessWindowHint),
             Qt::Window | Qt::FramelessWindowHint);
    QVERIFY(driver.wizard.testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(driver.wizard.minimumSize(), driver.wizard.maximumSize());
    driver.show(RunMode::Install);
    QTest::mouseClick(driver.minimizeButton(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(driver.wizard.isMinimized(), kPatience);
    QVERIFY(driver.shows("WelcomePage"));
}

void TestInstallerWizard::firstPages_data()
{
    QTest::addColumn<RunMode>("mode");
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QString>("title");
    QTest::newRow("install") << RunMode::Install << QByteArray("WelcomePage")
                             << u"Varnel Schematics setup"_s;
    QTest::newRow("update") << RunMode::Update << QByteArray("UpdateAvailablePage")
                            << u"Varnel Schematics setup"_s;
    QTest::newRow("uninstall") << RunMode::Uninstall << QByteArray("ConfirmUninstallPage")
                               << u"Varnel Schematics uninstall"_s;
}

void TestInstallerWizard::firstPages()
{
    QFETCH(RunMode, mode);
    QFETCH(QByteArray, page);
    WizardDriver driver;
    driver.mark->setFill(0.4);
    driver.mark->setA1Progress(1.0);
    driver.wizard.setRunMode(mode);
    QVERIFY(driver.shows(page));
    QTEST(driver.titleBar->findChild<QLabel *>()->text(), "title");
    QTEST(driver.wizard.windowTitle(), "title");
    QCOMPARE(driver.mark->fill(), 1.0);
    QCOMPARE(driver.mark->a1Progress(), 0.0); // its entrance begins
    driver.wizard.show();
    QTRY_VERIFY_WITH_TIMEOUT(driver.mark->driftOffset() != 0.0, kPatience); // it floats
    QTRY_COMPARE_WITH_TIMEOUT(driver.mark->a1Progress(), 1.0, kPatience);
    QVERIFY(driver.shows(page));
}

void TestInstallerWizard::markIsResetOnEveryPage()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    driver.mark->setFill(0.2);
    driver.mark->stopIdle();
    QVERIFY(driver.press(u"Next"_s));
    QCOMPARE(driver.mark->fill(), 1.0);
    QTRY_VERIFY_WITH_TIMEOUT(driver.mark->driftOffset() != 0.0, kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(driver.mark->a4Progress(), 1.0, kPatience);
    QVERIFY(driver.press(u"Back"_s));
    QCOMPARE(driver.mark->a4Progress(), 1.0); // the entrance is not played again
}

void TestInstallerWizard::firstShowEntersTheFirstPageOnceMore()
{
    ManualClock clock; // holds what moves until it has been looked at
    WizardDriver driver;
    driver.wizard.setRunMode(RunMode::Install);
    const QPointer<QPushButton> next = driver.button(u"Next"_s);
    driver.mark->setA1Progress(1.0);
    driver.wizard.show();
    QTRY_VERIFY_WITH_TIMEOUT(!next, kPatience);
    QVERIFY(driver.shows("WelcomePage"));
    // It comes in, with the window on screen, though it has been there.
    QVERIFY(driver.currentPage()->graphicsEffect());
    QVERIFY(driver.currentPage()->isVisible());
    const auto hasComeIn = [&] {
        clock.pass(100);
        return !driver.currentPage()->graphicsEffect() && driver.mark->a4Progress() == 1.0;
    };
    QTRY_VERIFY_WITH_TIMEOUT(hasComeIn(), kPatience);
}

void TestInstallerWizard::laterShowsChangeNothing()
{
    WizardDriver driver;
    driver.wizard.show(); // needs no mode
    QVERIFY(driver.comesTo("WelcomePage"));
    const QPointer<QPushButton> next = driver.button(u"Next"_s);
    driver.wizard.hide();
    driver.wizard.show();
    WizardDriver::settle();
    QCOMPARE(driver.button(u"Next"_s), next);
}

// The window enters its first page again once it is on screen.
void TestInstallerWizard::clicksBeforeTheWindowIsOnScreen()
{
    WizardDriver driver;
    driver.sandbox.setScenario("delay-ms = 20\n"); // long enough to be looked at
    const QSignalSpy finished(&driver.engine, &InstallerEngine::finished);
    driver.wizard.setRunMode(RunMode::Update);
    driver.wizard.show();
    driver.button(u"Update Now"_s)->click();
    driver.button(u"Update"_s)->click();
    QTest::qWait(100); // the first page would have been entered again by then
    QVERIFY(driver.shows("UpdatingPage"));
    QVERIFY(driver.comesTo("UpdateFinishedPage"));
    QCOMPARE(driver.sandbox.engineRuns().size(), 1);
    QCOMPARE(finished, (QList<QVariantList> { { true, QString() } }));
}

void TestInstallerWizard::nextNeedsAnAcceptedLicense()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(!driver.press(u"Next"_s));
    QVERIFY(driver.button(u"Back"_s)->isEnabled());
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
    // Although the next button lies in the same place, and a single click presses it.
    const QPushButton *next = driver.button(u"Update"_s);
    QVERIFY(next->geometry().contains(driver.footer->mapFrom(&driver.wizard, place)));
    QTest::mouseClick(driver.wizard.windowHandle(), Qt::LeftButton, {}, place);
    QVERIFY(driver.shows("UpdatingPage"));
}

void TestInstallerWizard::closes()
{
    for (const QString &button : { u"Cancel"_s, QString() }) { // none: from outside
        WizardDriver driver;
        driver.show(RunMode::Install);
        const int code = WizardDriver::runUntilQuit([&] {
            QVERIFY(button.isEmpty() ? driver.wizard.close() : driver.press(button));
            QVERIFY(!driver.wizard.isVisible()); // at once, whatever is still to be done
        });
        QCOMPARE(code, 0);
        QVERIFY(driver.sandbox.engineRuns().isEmpty());
    }
}

void TestInstallerWizard::closesDuringARun_data()
{
    QTest::addColumn<bool>("isSimulated");
    QTest::newRow("real") << false;
    QTest::newRow("simulated") << true;
}

// Without a question, and nothing of the run is left when the engine goes.
void TestInstallerWizard::closesDuringARun()
{
    QFETCH(bool, isSimulated);
    WizardDriver driver { isSimulated ? QString() : Sandbox::setupEngine() };
    driver.sandbox.setScenario("stall = forever\nstage = half\nignore-termination = yes\n");
    QVERIFY(driver.startRun(RunMode::Update));
    QTRY_VERIFY_WITH_TIMEOUT(driver.progress().percent->text() != u"0%"_s, kPatience);
    QElapsedTimer clock;
    clock.start();
    const int code = WizardDriver::runUntilQuit(
        [&] { QTest::mouseClick(driver.closeButton(), Qt::LeftButton); });
    QCOMPARE(code, 0);
    QVERIFY(!driver.wizard.isVisible());
    QVERIFY(clock.elapsed() < 5000);
    driver.engine.stop();
    QVERIFY(driver.sandbox.tempFiles().isEmpty());
}

QTEST_MAIN(TestInstallerWizard)
#include "tst_installerwizard.moc"
