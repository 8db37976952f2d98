// The window driven by the keyboard.

#include "widgets/radiooption.h"
#include "widgets/togglecheckbox.h"
#include "wizard/wizardtest.h"

#include <QPlainTextEdit>

using namespace Qt::Literals::StringLiterals;

class TestInstallerWizardKeyboard : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void enterGoesOnAndEscapeBack();
    void heldKeyIsIgnored();
    void enterWorksFromEveryControl();
    void enterPressesDangerOnlyWithFocus();
    void escapeClosesOnTheFirstPage();
    void keysDoNothingDuringARun();
    void focusGoesStraightOn();
    void focusOnEntering();
    void tabOrder();
};

void TestInstallerWizardKeyboard::enterGoesOnAndEscapeBack()
{
    WizardDriver driver { QString() };
    QVERIFY(driver.open(RunMode::Install));
    driver.key(Qt::Key_Return);
    QVERIFY(driver.shows("LicensePage"));
    driver.key(Qt::Key_Return); // Next is disabled
    driver.key(Qt::Key_Enter);
    QVERIFY(driver.shows("LicensePage"));
    QVERIFY(driver.click(kAccept));
    const QList<QByteArray> pages { "LicensePage", "SystemCheckPage", "DestinationPage",
                                    "TasksPage", "ReadyPage" };
    for (qsizetype i = 1; i < pages.size(); ++i) {
        driver.key(i % 2 ? Qt::Key_Enter : Qt::Key_Return);
        QVERIFY2(driver.shows(pages[i]), pages[i]);
    }
    for (qsizetype i = pages.size() - 1; i > 0; --i) {
        driver.key(Qt::Key_Escape);
        QVERIFY2(driver.shows(pages[i - 1]), pages[i - 1]);
    }
    driver.key(Qt::Key_Escape);
    QVERIFY(driver.shows("WelcomePage"));
}

// A key that is held down must not rush through the pages and start a run.
void TestInstallerWizardKeyboard::heldKeyIsIgnored()
{
    WizardDriver driver;
    QVERIFY(driver.open(RunMode::Install));
    QVERIFY(driver.goToReadyPage());
    for (Qt::Key key : { Qt::Key_Return, Qt::Key_Escape }) {
        QKeyEvent repeated(QEvent::KeyPress, key, Qt::NoModifier, {}, true);
        QCoreApplication::sendEvent(&driver.wizard, &repeated);
        QVERIFY(driver.shows("ReadyPage"));
    }
    QVERIFY(driver.sandbox.engineRuns().isEmpty());
}

void TestInstallerWizardKeyboard::enterWorksFromEveryControl()
{
    WizardDriver driver;
    QVERIFY(driver.open(RunMode::Install));
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(driver.click(kAccept));
    const QList<QWidget *> controls { driver.find<QPlainTextEdit>(), driver.find<RadioOption>() };
    for (QWidget *control : controls) {
        control->setFocus();
        driver.key(Qt::Key_Return);
        QVERIFY2(driver.shows("SystemCheckPage"), control->metaObject()->className());
        driver.key(Qt::Key_Escape);
    }
    QVERIFY(driver.pressAll({ u"Next"_s, u"Next"_s }));
    driver.currentPage()->findChild<QPushButton *>()->setFocus();
    driver.key(Qt::Key_Return);
    QVERIFY(driver.shows("TasksPage"));
    auto *shortcut = driver.currentPage()->findChild<ToggleCheckbox *>();
    shortcut->setFocus();
    driver.key(Qt::Key_Return);
    QVERIFY(driver.shows("ReadyPage"));
    QVERIFY(shortcut->isChecked());
}

void TestInstallerWizardKeyboard::enterPressesDangerOnlyWithFocus()
{
    WizardDriver driver { QString() };
    QVERIFY(driver.open(RunMode::Uninstall));
    auto *preferences = driver.currentPage()->findChild<ToggleCheckbox *>();
    driver.key(Qt::Key_Return);
    preferences->setFocus();
    driver.key(Qt::Key_Return);
    driver.button(u"Cancel"_s)->setFocus();
    driver.key(Qt::Key_Enter);
    QVERIFY(driver.shows("ConfirmUninstallPage"));
    QVERIFY(driver.wizard.isVisible());
    QVERIFY(!preferences->isChecked());
    driver.button(u"Uninstall"_s)->setFocus();
    driver.key(Qt::Key_Return);
    QVERIFY(driver.shows("UninstallingPage"));
}

void TestInstallerWizardKeyboard::escapeClosesOnTheFirstPage()
{
    WizardDriver driver;
    QVERIFY(driver.open(RunMode::Uninstall));
    QCOMPARE(WizardDriver::runUntilQuit([&] { driver.lastKey(Qt::Key_Escape); }), 0);
    QVERIFY(!driver.wizard.isVisible());
}

void TestInstallerWizardKeyboard::keysDoNothingDuringARun()
{
    WizardDriver driver;
    driver.sandbox.setScenario("stall = forever\n");
    QVERIFY(driver.open(RunMode::Install));
    QVERIFY(driver.goToReadyPage());
    driver.key(Qt::Key_Return);
    for (Qt::Key key : { Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape, Qt::Key_Space }) {
        driver.key(key);
        QVERIFY(driver.shows("InstallingPage"));
        QCOMPARE(driver.status(), u"Do not turn off your PC"_s);
        QVERIFY(driver.wizard.isVisible());
        QVERIFY(!driver.wizard.isMinimized());
    }
    // The button that started the run is gone. Neither the focus nor its ring may turn up on
    // another.
    QCOMPARE(WizardDriver::focus(), u"InstallingPage"_s);
    QTRY_COMPARE_WITH_TIMEOUT(driver.sandbox.engineRuns().size(), 1, kPatience);
}

// Assistive technology presses a button without giving it the focus.
// A screen reader would name each widget in between. Without motion the page before is hidden at
// once.
void TestInstallerWizardKeyboard::focusGoesStraightOn()
{
    qputenv("VARNEL_REDUCED_MOTION", "1");
    WizardDriver driver { QString() };
    QVERIFY(driver.open(RunMode::Uninstall));
    driver.currentPage()->findChild<ToggleCheckbox *>()->setFocus();
    QList<QWidget *> visited;
    connect(qApp, &QApplication::focusChanged, &driver.wizard, [&](QWidget *, QWidget *now) {
        if (now)
            visited << now;
    });
    driver.button(u"Uninstall"_s)->click();
    QCOMPARE(WizardDriver::focus(), u"UninstallingPage"_s);
    QCOMPARE(visited.size(), 1);
}

void TestInstallerWizardKeyboard::focusOnEntering()
{
    WizardDriver driver;
    QVERIFY(driver.open(RunMode::Install));
    QCOMPARE(WizardDriver::focus(), u"Next"_s);
    // What has to be answered first, where Next is disabled.
    QVERIFY(driver.press(u"Next"_s));
    QCOMPARE(WizardDriver::focus(), kDecline);
    driver.key(Qt::Key_Space); // neither minimises nor closes the window
    QVERIFY(driver.wizard.isVisible() && !driver.wizard.isMinimized());
    driver.key(Qt::Key_Down);
    QCOMPARE(WizardDriver::focus(), kAccept);
    for (const QString &button : { u"Next"_s, u"Next"_s, u"Next"_s, u"Install"_s }) {
        QVERIFY(driver.press(u"Next"_s));
        QCOMPARE(WizardDriver::focus(), button);
    }
    WizardDriver update;
    QVERIFY(update.open(RunMode::Update));
    QCOMPARE(WizardDriver::focus(), u"Update Now"_s);
    // The way back from what cannot be undone.
    WizardDriver uninstall;
    QVERIFY(uninstall.open(RunMode::Uninstall));
    QCOMPARE(WizardDriver::focus(), u"Cancel"_s);
}

void TestInstallerWizardKeyboard::tabOrder()
{
    const QStringList title { u"–"_s, u"✕"_s };
    const QString license = u"QPlainTextEdit"_s;
    WizardDriver driver;
    QVERIFY(driver.open(RunMode::Install));
    QCOMPARE(driver.tabOrder(), title + QStringList({ u"Cancel"_s, u"Next"_s }));

    QVERIFY(driver.press(u"Next"_s));
    QCOMPARE(driver.tabOrder(), title + QStringList({ license, kDecline, u"Back"_s }));
    QVERIFY(driver.click(kAccept));
    QCOMPARE(driver.tabOrder(), title + QStringList({ license, kAccept, u"Back"_s, u"Next"_s }));

    QVERIFY(driver.pressAll({ u"Next"_s, u"Next"_s }));
    QCOMPARE(driver.tabOrder(), title + QStringList({ u"Change"_s, u"Back"_s, u"Next"_s }));
    QVERIFY(driver.press(u"Next"_s));
    QCOMPARE(driver.tabOrder(), title + QStringList({ kShortcut, u"Back"_s, u"Next"_s }));

    WizardDriver uninstall;
    QVERIFY(uninstall.open(RunMode::Uninstall));
    QCOMPARE(uninstall.tabOrder(),
             title + QStringList({ kDeletePreferences, u"Cancel"_s, u"Uninstall"_s }));
}

QTEST_MAIN(TestInstallerWizardKeyboard)
#include "tst_installerwizard_keyboard.moc"
