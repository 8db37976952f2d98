#include "app/applicationfonts.h"
#include "pages/licensepage.h"
#include "pages/manualclock.h"
#include "pages/strictwarnings.h"
#include "pages/welcomepage.h"
#include "theme/thememanager.h"
#include "widgets/animatedmark.h"
#include "widgets/confettioverlay.h"
#include "wizard/installerfooterbar.h"
#include "wizard/installerpane.h"
#include "wizard/installerrail.h"
#include "wizard/installertitlebar.h"
#include "wizard/olddriver.h"

#include <QGraphicsEffect>
#include <QPointer>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

class TestInstallerWizard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void window();
    void chrome();
    void confettiLiesBelowEverything();
    void fifteenPagesInTheirOrder();
    void firstPages_data();
    void firstPages();
    void everyEntryRestsTheMark();
    void firstShowEntersTheFirstPageOnceMore();
    void firstShowNeedsNoMode();
    void firstShowLeavesAQuickUserAlone();
    void laterShowsChangeNothing();
    void minimizes();
};

void TestInstallerWizard::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestInstallerWizard::window()
{
    const WizardDriver driver;
    QCOMPARE(driver.wizard.windowFlags() & (Qt::WindowType_Mask | Qt::FramelessWindowHint),
             Qt::Window | Qt::FramelessWindowHint);
    QVERIFY(driver.wizard.testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(driver.wizard.minimumSize(), QSize(680, 474));
    QCOMPARE(driver.wizard.maximumSize(), QSize(680, 474));
    QCOMPARE(driver.titleBar->title(), u"Varnel Schematics setup"_s);
    QVERIFY(!driver.wizard.isVisible());
}

void TestInstallerWizard::chrome()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    QCOMPARE(driver.titleBar->geometry(), QRect(0, 0, 680, 36));
    QCOMPARE(driver.find<InstallerRail>()->geometry(), QRect(0, 36, 196, 390));
    QCOMPARE(driver.pane->geometry(), QRect(196, 36, 484, 390));
    QCOMPARE(driver.footer->geometry(), QRect(0, 426, 680, 48));
}

void TestInstallerWizard::confettiLiesBelowEverything()
{
    WizardDriver driver;
    const auto *confetti = driver.find<ConfettiOverlay>();
    QCOMPARE(confetti->parentWidget(), &driver.wizard);
    QCOMPARE(confetti->geometry(), QRect(0, 0, 680, 474));
    for (const QObject *child : driver.wizard.children()) {
        if (child->isWidgetType()) {
            QCOMPARE(child, confetti); // the first widget is the lowest
            break;
        }
    }
    driver.show(RunMode::Install);
    QVERIFY(!confetti->isVisible());
}

void TestInstallerWizard::fifteenPagesInTheirOrder()
{
    const WizardDriver driver;
    QStringList names;
    for (const QObject *child : driver.pane->children()) {
        const auto *page = qobject_cast<const QWidget *>(child);
        if (!page)
            continue;
        names.append(QString::fromLatin1(page->metaObject()->className()));
        QVERIFY(page->isHidden());
    }
    QCOMPARE(
        names,
        (QStringList { u"WelcomePage"_s, u"LicensePage"_s, u"SystemCheckPage"_s,
                       u"DestinationPage"_s, u"TasksPage"_s, u"ReadyPage"_s, u"InstallingPage"_s,
                       u"FinishedPage"_s, u"UpdateAvailablePage"_s, u"ReadyToUpdatePage"_s,
                       u"UpdatingPage"_s, u"UpdateFinishedPage"_s, u"ConfirmUninstallPage"_s,
                       u"UninstallingPage"_s, u"UninstallCompletePage"_s }));
}

void TestInstallerWizard::firstPages_data()
{
    QTest::addColumn<RunMode>("mode");
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("status");
    QTest::addColumn<QStringList>("buttons");
    QTest::newRow("install") << RunMode::Install << QByteArray("WelcomePage")
                             << u"Varnel Schematics setup"_s << u"Administrator rights required"_s
                             << QStringList { u"Cancel ghost"_s, u"Next primary"_s };
    QTest::newRow("update") << RunMode::Update << QByteArray("UpdateAvailablePage")
                            << u"Varnel Schematics setup"_s
                            << u"Recommended — includes performance fixes"_s
                            << QStringList { u"Skip ghost"_s, u"Update Now primary"_s };
    QTest::newRow("uninstall") << RunMode::Uninstall << QByteArray("ConfirmUninstallPage")
                               << u"Varnel Schematics uninstall"_s
                               << u"Administrator rights required"_s
                               << QStringList { u"Cancel ghost"_s, u"Uninstall danger"_s };
}

void TestInstallerWizard::firstPages()
{
    QFETCH(RunMode, mode);
    QFETCH(QByteArray, page);
    QFETCH(QString, title);
    QFETCH(QString, status);
    QFETCH(QStringList, buttons);
    WizardDriver driver;
    driver.mark->setFill(0.4);
    driver.mark->setA1Progress(1.0);
    driver.wizard.setRunMode(mode);
    QVERIFY(driver.hasEntered(page, status, buttons));
    QCOMPARE(driver.titleBar->title(), title);
    QCOMPARE(driver.wizard.windowTitle(), title);
    QCOMPARE(driver.mark->fill(), 1.0);
    QVERIFY(driver.mark->isIdle());
    QCOMPARE(driver.mark->a1Progress(), 0.0); // its entrance begins
    driver.wizard.show();
    QTRY_COMPARE_WITH_TIMEOUT(driver.mark->a1Progress(), 1.0, kPatience);
    QVERIFY(driver.hasEntered(page, status, buttons));
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
    QCOMPARE(driver.mark->a4Progress(), 1.0); // the entrance is for the first page of the mode only
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
    QVERIFY(driver.hasEntered("WelcomePage", u"Administrator rights required"_s,
                              { u"Cancel ghost"_s, u"Next primary"_s }));
    // It comes in, with the window on screen, though it has been there.
    QVERIFY(driver.currentPage()->graphicsEffect());
    QVERIFY(driver.currentPage()->isVisible());
    const auto hasComeIn = [&] {
        clock.pass(100);
        return !driver.currentPage()->graphicsEffect() && driver.mark->a4Progress() == 1.0;
    };
    QTRY_VERIFY_WITH_TIMEOUT(hasComeIn(), kPatience);
}

void TestInstallerWizard::firstShowNeedsNoMode()
{
    WizardDriver driver;
    driver.wizard.show();
    QTRY_VERIFY_WITH_TIMEOUT(driver.shows<WelcomePage>(), kPatience);
}

void TestInstallerWizard::firstShowLeavesAQuickUserAlone()
{
    WizardDriver driver;
    driver.wizard.setRunMode(RunMode::Install);
    driver.wizard.show();
    driver.button(u"Next"_s)->click();
    bool settled = false;
    QTimer::singleShot(0, &driver.wizard, [&] { settled = true; });
    QTRY_VERIFY_WITH_TIMEOUT(settled, kPatience);
    QVERIFY(driver.shows<LicensePage>());
    QCOMPARE(driver.buttons(), (QStringList { u"Back ghost"_s, u"Next primary disabled"_s }));
}

void TestInstallerWizard::laterShowsChangeNothing()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    const QPointer<QPushButton> next = driver.button(u"Next"_s);
    driver.wizard.hide();
    driver.wizard.show();
    bool settled = false;
    QTimer::singleShot(0, &driver.wizard, [&] { settled = true; });
    QTRY_VERIFY_WITH_TIMEOUT(settled, kPatience);
    QCOMPARE(driver.button(u"Next"_s), next);
}

void TestInstallerWizard::minimizes()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    QTest::mouseClick(driver.titleBar->findChildren<QPushButton *>().first(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(driver.wizard.isMinimized(), kPatience);
    QVERIFY(driver.shows<WelcomePage>());
}

QTEST_MAIN(TestInstallerWizard)
#include "tst_installerwizard.moc"
