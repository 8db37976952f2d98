// The window and its pages before a run. What stands where is recorded by tst_pagestructure.

#include "pages/manualclock.h"
#include "widgets/animatedmark.h"
#include "wizard/installerfooterbar.h"
#include "wizard/installerpane.h"
#include "wizard/installertitlebar.h"
#include "wizard/wizardtest.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QGraphicsEffect>
#include <QPointer>
#include <QSignalSpy>
#include <QTimer>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

class TestInstallerWizard : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void window();
    void minimizes();
    void firstPages_data();
    void firstPages();
    void everyEntryRestsTheMark();
    void firstShowEntersTheFirstPageOnceMore();
    void laterShowsChangeNothing();
    void clicksBeforeTheWindowIsOnScreen_data();
    void clicksBeforeTheWindowIsOnScreen();
    void pagesForwardAndBack();
    void nextNeedsAnAcceptedLicense();
    void tenQuickClicks();
    void doubleClickPressesOneButton();
    void closes_data();
    void closes();
    void closesDuringARun_data();
    void closesDuringARun();
    void closesOnce();
};

void TestInstallerWizard::window()
{
    const WizardDriver driver;
    QCOMPARE(driver.wizard.windowFlags() & (Qt::WindowType_Mask | Qt::FramelessWindowHint),
             Qt::Window | Qt::FramelessWindowHint);
    QVERIFY(driver.wizard.testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(driver.wizard.minimumSize(), QSize(680, 474));
    QCOMPARE(driver.wizard.maximumSize(), QSize(680, 474));
    QVERIFY(!driver.wizard.isVisible());
}

void TestInstallerWizard::minimizes()
{
    WizardDriver driver;
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
    QTEST(driver.titleBar->title(), "title");
    QTEST(driver.wizard.windowTitle(), "title");
    QCOMPARE(driver.mark->fill(), 1.0);
    QVERIFY(driver.mark->isIdle());
    QCOMPARE(driver.mark->a1Progress(), 0.0); // its entrance begins
    driver.wizard.show();
    QTRY_COMPARE_WITH_TIMEOUT(driver.mark->a1Progress(), 1.0, kPatience);
    QVERIFY(driver.shows(page));
}

void TestInstallerWizard::everyEntryRestsTheMark()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    driver.mark->setFill(0.2);
    driver.mark->stopIdle();
    QVERIFY(driver.press(u"Next"_s));
    QCOMPARE(driver.mark->fill(), 1.0);
    QVERIFY(driver.mark->isIdle());
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
    bool settled = false;
    QTimer::singleShot(0, &driver.wizard, [&] { settled = true; });
    QTRY_VERIFY_WITH_TIMEOUT(settled, kPatience);
    QCOMPARE(driver.button(u"Next"_s), next);
}

void TestInstallerWizard::clicksBeforeTheWindowIsOnScreen_data()
{
    QTest::addColumn<RunMode>("mode");
    QTest::addColumn<int>("delay"); // ms; -1 for before the event loop has turned even once
    QTest::newRow("install, at once") << RunMode::Install << -1;
    QTest::newRow("install, soon") << RunMode::Install << 20;
    QTest::newRow("update, at once") << RunMode::Update << -1;
    QTest::newRow("uninstall, at once") << RunMode::Uninstall << -1;
}

// The window enters its first page again once it is on screen.
void TestInstallerWizard::clicksBeforeTheWindowIsOnScreen()
{
    QFETCH(const RunMode, mode);
    QFETCH(const int, delay);
    WizardDriver driver;
    driver.sandbox.setScenario("delay-ms = 20\n"); // long enough to be looked at
    driver.wizard.setUninstallerPath(Sandbox::setupEngine());
    const QSignalSpy finished(&driver.engine, &InstallerEngine::finished);
    driver.wizard.setRunMode(mode);
    driver.wizard.show();
    bool isStarted = false;
    const auto start = [&] {
        QStringList ways { u"Uninstall"_s };
        if (mode == RunMode::Update)
            ways = { u"Update Now"_s, u"Update"_s };
        if (mode == RunMode::Install)
            ways = { u"Next"_s, u"Next"_s, u"Next"_s, u"Next"_s, u"Next"_s, u"Install"_s };
        for (const QString &way : std::as_const(ways)) {
            if (driver.shows("LicensePage"))
                QVERIFY(driver.click(kAccept));
            driver.button(way)->click();
        }
        isStarted = true;
    };
    if (delay < 0)
        start();
    else
        QTimer::singleShot(delay, Qt::PreciseTimer, &driver.wizard, start);
    QTRY_VERIFY_WITH_TIMEOUT(isStarted, kPatience);
    QTest::qWait(100); // the first page would have been entered again by then
    QVERIFY(driver.shows(progressPage(mode)));
    QVERIFY(driver.comesTo(finishPage(mode)));
    QCOMPARE(driver.sandbox.engineRuns().size(), 1);
    QCOMPARE(finished, (QList<QVariantList> { { true, QString() } }));
}

void TestInstallerWizard::pagesForwardAndBack()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    const QList<QByteArray> pages { "WelcomePage",     "LicensePage", "SystemCheckPage",
                                    "DestinationPage", "TasksPage",   "ReadyPage" };
    for (const QByteArray &page : pages) {
        QVERIFY2(driver.shows(page), page);
        if (page == "LicensePage")
            QVERIFY(driver.click(kAccept));
        if (page != pages.last())
            QVERIFY(driver.press(u"Next"_s));
    }
    for (qsizetype i = pages.size() - 2; i >= 0; --i) {
        QVERIFY(driver.press(u"Back"_s));
        QVERIFY2(driver.shows(pages[i]), pages[i]);
    }
    QVERIFY(driver.sandbox.engineRuns().isEmpty());

    WizardDriver update;
    update.show(RunMode::Update);
    QVERIFY(update.press(u"Update Now"_s));
    QVERIFY(update.shows("ReadyToUpdatePage"));
    QVERIFY(update.press(u"Back"_s));
    QVERIFY(update.shows("UpdateAvailablePage"));
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

void TestInstallerWizard::tenQuickClicks()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    QVERIFY(driver.goToReadyPage());
    for (int i = 0; i < 5; ++i) {
        // As quick as can be: without a turn of the event loop in between.
        driver.button(u"Back"_s)->click();
        driver.button(u"Next"_s)->click();
    }
    QVERIFY(driver.shows("ReadyPage"));
    const auto pages = driver.pane->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    const auto isAlone = [&] {
        return std::all_of(pages.begin(), pages.end(), [&](const QWidget *page) {
            return page->isVisible() == (page == driver.currentPage()) && !page->graphicsEffect();
        });
    };
    QTRY_VERIFY_WITH_TIMEOUT(isAlone(), kPatience);
    QCOMPARE(driver.currentPage()->geometry(), driver.pane->rect());
    QTRY_COMPARE_WITH_TIMEOUT(driver.footer->findChildren<QPushButton *>().size(), 2, kPatience);
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

void TestInstallerWizard::closes_data()
{
    QTest::addColumn<RunMode>("mode");
    QTest::addColumn<QString>("button"); // none: from outside
    QTest::newRow("cancelled installation") << RunMode::Install << u"Cancel"_s;
    QTest::newRow("skipped update") << RunMode::Update << u"Skip"_s;
    QTest::newRow("cancelled removal") << RunMode::Uninstall << u"Cancel"_s;
    QTest::newRow("from outside") << RunMode::Install << QString();
}

void TestInstallerWizard::closes()
{
    QFETCH(RunMode, mode);
    QFETCH(QString, button);
    WizardDriver driver;
    driver.show(mode);
    const int code = WizardDriver::runUntilQuit([&] {
        QVERIFY(button.isEmpty() ? driver.wizard.close() : driver.press(button));
        QVERIFY(!driver.wizard.isVisible()); // at once, whatever is still to be done
    });
    QCOMPARE(code, 0);
    QVERIFY(driver.sandbox.engineRuns().isEmpty());
}

void TestInstallerWizard::closesDuringARun_data()
{
    QTest::addColumn<bool>("isSimulated");
    QTest::addColumn<bool>("fromOutside");
    QTest::newRow("by the title bar") << false << false;
    QTest::newRow("from outside") << false << true;
    QTest::newRow("simulated") << true << false;
}

// Without a question, and nothing of the run is left when the engine goes.
void TestInstallerWizard::closesDuringARun()
{
    QFETCH(bool, isSimulated);
    QFETCH(bool, fromOutside);
    WizardDriver driver { isSimulated ? QString() : Sandbox::setupEngine() };
    driver.sandbox.setScenario("stall = forever\nstage = half\nignore-termination = yes\n");
    QVERIFY(driver.startRun(RunMode::Update));
    QTRY_VERIFY_WITH_TIMEOUT(driver.progress().percent->text() != u"0%"_s, kPatience);
    QElapsedTimer clock;
    clock.start();
    const int code = WizardDriver::runUntilQuit([&] {
        if (fromOutside)
            QVERIFY(driver.wizard.close());
        else
            QTest::mouseClick(driver.closeButton(), Qt::LeftButton);
    });
    QCOMPARE(code, 0);
    QVERIFY(!driver.wizard.isVisible());
    QVERIFY(clock.elapsed() < 5000);
    driver.engine.stop();
    QVERIFY(driver.sandbox.tempFiles().isEmpty());
}

void TestInstallerWizard::closesOnce()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    const int code = WizardDriver::runUntilQuit([&] {
        for (QPushButton *button : { driver.closeButton(), driver.button(u"Cancel"_s) })
            button->click();
        driver.wizard.close();
        // Once the end has been asked for, no event loop starts any more.
        QCOMPARE(QEventLoop().exec(), 0);
    });
    QCOMPARE(code, 0);
    QCOMPARE(WizardDriver::runUntilQuit([] {}, 400), -1); // nothing ends it any more
}

QTEST_MAIN(TestInstallerWizard)
#include "tst_installerwizard.moc"
