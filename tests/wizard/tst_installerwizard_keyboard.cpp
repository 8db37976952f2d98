#include "app/applicationfonts.h"
#include "pages/confirmuninstallpage.h"
#include "pages/destinationpage.h"
#include "pages/licensepage.h"
#include "pages/readypage.h"
#include "pages/strictwarnings.h"
#include "pages/systemcheckpage.h"
#include "pages/taskspage.h"
#include "pages/updateavailablepage.h"
#include "pages/welcomepage.h"
#include "theme/thememanager.h"
#include "widgets/radiooption.h"
#include "widgets/togglecheckbox.h"
#include "wizard/installingpage.h"
#include "wizard/keyboard.h"
#include "wizard/uninstallingpage.h"

#include <QPlainTextEdit>
#include <QSignalSpy>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kAccept = u"I accept the license agreement"_s;
const QString kDecline = u"I do not accept the agreement"_s;

} // namespace

class TestInstallerWizardKeyboard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void enterGoesOn_data();
    void enterGoesOn();
    void enterStopsAtAClosedGate();
    void heldKeyWalksNoFurther();
    void enterWorksFromEveryControl();
    void enterPressesDangerOnlyWithFocus();
    void escapeGoesBack();
    void escapeClosesOnTheFirstPage_data();
    void escapeClosesOnTheFirstPage();
    void keysDoNothingDuringARun();
    void noTitleButtonHasTheFocusDuringARun();
    void controlOfThePageBeforeKeepsNoFocusDuringARun();
    void spacePressesWhatHasTheFocus();
    void otherKeysDoNothing();
    void focusOnEntering();
    void focusIsNeverOnTheTitleBar();
    void tabOrder();
    void arrowKeysChangeTheAnswer();
};

void TestInstallerWizardKeyboard::initTestCase()
{
    QApplication::setQuitOnLastWindowClosed(false);
    registerApplicationFonts();
}

void TestInstallerWizardKeyboard::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestInstallerWizardKeyboard::enterGoesOn_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("enter") << Qt::Key_Enter;
}

void TestInstallerWizardKeyboard::enterGoesOn()
{
    QFETCH(Qt::Key, key);
    Keyboard driver { QString() };
    QVERIFY(driver.open(RunMode::Install));
    driver.key(key);
    QVERIFY(driver.shows<LicensePage>());
    QVERIFY(driver.click(kAccept));
    driver.key(key);
    QVERIFY(driver.shows<SystemCheckPage>());
    driver.key(key);
    QVERIFY(driver.shows<DestinationPage>());
    driver.key(key);
    QVERIFY(driver.shows<TasksPage>());
    driver.key(key);
    QVERIFY(driver.shows<ReadyPage>());
    driver.key(key);
    QVERIFY(driver.shows<InstallingPage>());
}

void TestInstallerWizardKeyboard::enterStopsAtAClosedGate()
{
    Keyboard driver;
    QVERIFY(driver.open(RunMode::Install));
    driver.key(Qt::Key_Return);
    driver.key(Qt::Key_Return);
    driver.key(Qt::Key_Enter);
    QVERIFY(driver.shows<LicensePage>());
}

// A key that is held down must not rush through the pages and start a run.
void TestInstallerWizardKeyboard::heldKeyWalksNoFurther()
{
    Keyboard driver;
    QVERIFY(driver.open(RunMode::Install));
    QVERIFY(driver.goToReadyPage());
    for (Qt::Key key : { Qt::Key_Return, Qt::Key_Escape }) {
        QKeyEvent repeated(QEvent::KeyPress, key, Qt::NoModifier, {}, true);
        QCoreApplication::sendEvent(&driver.wizard, &repeated);
        QVERIFY(driver.shows<ReadyPage>());
    }
    QVERIFY(driver.sandbox.engineRuns().isEmpty());
}

void TestInstallerWizardKeyboard::enterWorksFromEveryControl()
{
    Keyboard driver;
    QVERIFY(driver.open(RunMode::Install));
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(driver.click(kAccept));
    const auto backToThePage = [&](QWidget *control) {
        driver.key(Qt::Key_Escape);
        control->setFocus();
    };
    for (QWidget *control : { static_cast<QWidget *>(driver.find<QPlainTextEdit>()),
                              static_cast<QWidget *>(driver.find<RadioOption>()) }) {
        control->setFocus();
        driver.key(Qt::Key_Return);
        QVERIFY2(driver.shows<SystemCheckPage>(), control->metaObject()->className());
        backToThePage(control);
        QVERIFY(driver.shows<LicensePage>());
    }
    QVERIFY(driver.find<LicensePage>()->isAccepted());
    QVERIFY(driver.pressAll({ u"Next"_s, u"Next"_s }));
    driver.find<DestinationPage>()->findChild<QPushButton *>()->setFocus();
    driver.key(Qt::Key_Return);
    QVERIFY(driver.shows<TasksPage>());
    driver.find<ToggleCheckbox>()->setFocus();
    driver.key(Qt::Key_Return);
    QVERIFY(driver.shows<ReadyPage>());
    QVERIFY(driver.find<TasksPage>()->desktopShortcut());
}

void TestInstallerWizardKeyboard::enterPressesDangerOnlyWithFocus()
{
    Keyboard driver { QString() };
    QVERIFY(driver.open(RunMode::Uninstall));
    driver.key(Qt::Key_Return);
    driver.find<ConfirmUninstallPage>()->findChild<ToggleCheckbox *>()->setFocus();
    driver.key(Qt::Key_Return);
    driver.button(u"Cancel"_s)->setFocus();
    driver.key(Qt::Key_Enter);
    QVERIFY(driver.shows<ConfirmUninstallPage>());
    QVERIFY(driver.wizard.isVisible());
    QVERIFY(!driver.find<ConfirmUninstallPage>()->deletePreferences());
    driver.button(u"Uninstall"_s)->setFocus();
    driver.key(Qt::Key_Return);
    QVERIFY(driver.shows<UninstallingPage>());
}

void TestInstallerWizardKeyboard::escapeGoesBack()
{
    Keyboard driver;
    QVERIFY(driver.open(RunMode::Install));
    QVERIFY(driver.goToReadyPage());
    driver.key(Qt::Key_Escape);
    QVERIFY(driver.shows<TasksPage>());
    driver.key(Qt::Key_Escape);
    QVERIFY(driver.shows<DestinationPage>());
    driver.key(Qt::Key_Escape);
    QVERIFY(driver.shows<SystemCheckPage>());
    driver.key(Qt::Key_Escape);
    QVERIFY(driver.shows<LicensePage>());
    driver.key(Qt::Key_Escape);
    QVERIFY(driver.shows<WelcomePage>());
}

void TestInstallerWizardKeyboard::escapeClosesOnTheFirstPage_data()
{
    QTest::addColumn<RunMode>("mode");
    QTest::newRow("install") << RunMode::Install;
    QTest::newRow("update") << RunMode::Update;
    QTest::newRow("uninstall") << RunMode::Uninstall;
}

void TestInstallerWizardKeyboard::escapeClosesOnTheFirstPage()
{
    QFETCH(RunMode, mode);
    Keyboard driver;
    QVERIFY(driver.open(mode));
    QCOMPARE(Keyboard::runUntilQuit([&] { driver.lastKey(Qt::Key_Escape); }), 0);
    QVERIFY(!driver.wizard.isVisible());
    QVERIFY(driver.sandbox.engineRuns().isEmpty());
}

void TestInstallerWizardKeyboard::keysDoNothingDuringARun()
{
    Keyboard driver;
    driver.sandbox.setScenario("stall = forever\n");
    const QSignalSpy finished(&driver.engine, &InstallerEngine::finished);
    QVERIFY(driver.open(RunMode::Install));
    QVERIFY(driver.goToReadyPage());
    driver.key(Qt::Key_Return);
    QVERIFY(driver.shows<InstallingPage>());
    for (Qt::Key key : { Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape, Qt::Key_Space }) {
        // Then there would be something for a key to do.
        QVERIFY2(finished.isEmpty(), qPrintable(finished.value(0).value(1).toString()));
        driver.key(key);
        QVERIFY(driver.shows<InstallingPage>());
        QVERIFY(driver.wizard.isVisible());
        QVERIFY(!driver.wizard.isMinimized());
    }
    QTRY_COMPARE_WITH_TIMEOUT(driver.sandbox.engineRuns().size(), 1, kPatience);
}

// The button that started the run is gone, and nobody asked for the one in the title bar: the
// focus, and the ring that shows it, must not turn up there.
void TestInstallerWizardKeyboard::noTitleButtonHasTheFocusDuringARun()
{
    Keyboard driver;
    driver.sandbox.setScenario("stall = forever\n");
    QVERIFY(driver.open(RunMode::Install));
    QVERIFY(driver.goToReadyPage());
    QVERIFY(driver.press(u"Install"_s));
    Keyboard::settle();
    QVERIFY2(!driver.titleBar->isAncestorOf(QApplication::focusWidget()),
             qPrintable(driver.focus()));
}

// As assistive technology presses a button: without giving it the focus.
void TestInstallerWizardKeyboard::controlOfThePageBeforeKeepsNoFocusDuringARun()
{
    Keyboard driver { QString() };
    QVERIFY(driver.open(RunMode::Uninstall));
    const QWidget *page = driver.currentPage();
    page->findChild<ToggleCheckbox *>()->setFocus();
    driver.button(u"Uninstall"_s)->click();
    QTRY_VERIFY_WITH_TIMEOUT(!page->isVisible(), kPatience);
    QCOMPARE(driver.focus(), u"UninstallingPage"_s);
}

void TestInstallerWizardKeyboard::spacePressesWhatHasTheFocus()
{
    Keyboard driver;
    QVERIFY(driver.open(RunMode::Install));
    driver.key(Qt::Key_Space);
    QVERIFY(driver.shows<LicensePage>());
    driver.button(u"Back"_s)->setFocus();
    driver.key(Qt::Key_Space);
    QVERIFY(driver.shows<WelcomePage>());
}

void TestInstallerWizardKeyboard::otherKeysDoNothing()
{
    Keyboard driver;
    QVERIFY(driver.open(RunMode::Install));
    for (Qt::Key key : { Qt::Key_A, Qt::Key_Backspace, Qt::Key_Delete, Qt::Key_F1, Qt::Key_Home })
        driver.key(key);
    QVERIFY(driver.shows<WelcomePage>());
    QVERIFY(driver.wizard.isVisible());
}

void TestInstallerWizardKeyboard::focusOnEntering()
{
    Keyboard driver;
    QVERIFY(driver.open(RunMode::Install));
    QCOMPARE(driver.focus(), u"Next"_s);
    // What has to be answered first, where there is no way on yet.
    QVERIFY(driver.press(u"Next"_s));
    QCOMPARE(driver.focus(), kDecline);
    QVERIFY(driver.click(kAccept));
    for (int i = 0; i < 3; ++i) {
        QVERIFY(driver.press(u"Next"_s));
        QCOMPARE(driver.focus(), u"Next"_s);
    }
    QVERIFY(driver.press(u"Next"_s));
    QCOMPARE(driver.focus(), u"Install"_s);

    Keyboard update;
    QVERIFY(update.open(RunMode::Update));
    QCOMPARE(update.focus(), u"Update Now"_s);

    // The way back from what cannot be undone.
    Keyboard uninstall;
    QVERIFY(uninstall.open(RunMode::Uninstall));
    QCOMPARE(uninstall.focus(), u"Cancel"_s);
}

// Also where Next is disabled: a Space too many must not minimise or close the window.
void TestInstallerWizardKeyboard::focusIsNeverOnTheTitleBar()
{
    Keyboard driver;
    QVERIFY(driver.open(RunMode::Install));
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(driver.shows<LicensePage>());
    Keyboard::settle();
    QVERIFY2(!driver.titleBar->isAncestorOf(QApplication::focusWidget()),
             qPrintable(driver.focus()));
    driver.key(Qt::Key_Space);
    QVERIFY(driver.wizard.isVisible());
    QVERIFY(!driver.wizard.isMinimized());
}

void TestInstallerWizardKeyboard::tabOrder()
{
    const QStringList title { u"–"_s, u"✕"_s };
    Keyboard driver;
    QVERIFY(driver.open(RunMode::Install));
    QCOMPARE(driver.tabOrder(), title + QStringList({ u"Cancel"_s, u"Next"_s }));

    QVERIFY(driver.press(u"Next"_s));
    QCOMPARE(driver.tabOrder(), title + QStringList({ u"QPlainTextEdit"_s, kDecline, u"Back"_s }));
    QVERIFY(driver.click(kAccept));
    QCOMPARE(driver.tabOrder(),
             title + QStringList({ u"QPlainTextEdit"_s, kAccept, u"Back"_s, u"Next"_s }));

    QVERIFY(driver.pressAll({ u"Next"_s, u"Next"_s }));
    QCOMPARE(driver.tabOrder(), title + QStringList({ u"Change"_s, u"Back"_s, u"Next"_s }));
    QVERIFY(driver.press(u"Next"_s));
    QCOMPARE(driver.tabOrder(),
             title + QStringList({ u"Create a desktop shortcut"_s, u"Back"_s, u"Next"_s }));

    Keyboard uninstall;
    QVERIFY(uninstall.open(RunMode::Uninstall));
    QCOMPARE(uninstall.tabOrder(),
             title
                 + QStringList({ u"Also delete my preferences and cached data"_s, u"Cancel"_s,
                                 u"Uninstall"_s }));
}

void TestInstallerWizardKeyboard::arrowKeysChangeTheAnswer()
{
    Keyboard driver;
    QVERIFY(driver.open(RunMode::Install));
    QVERIFY(driver.press(u"Next"_s));
    driver.find<RadioOption>()->setFocus();
    driver.key(Qt::Key_Down);
    QCOMPARE(driver.focus(), kAccept);
    QVERIFY(driver.button(u"Next"_s)->isEnabled());
    driver.key(Qt::Key_Up);
    QCOMPARE(driver.focus(), kDecline);
    QVERIFY(!driver.button(u"Next"_s)->isEnabled());
    QVERIFY(driver.shows<LicensePage>());
}

QTEST_MAIN(TestInstallerWizardKeyboard)
#include "tst_installerwizard_keyboard.moc"
