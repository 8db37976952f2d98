// The window without mouse and screen: driven by the keyboard, and heard. A screen reader says what
// takes the focus, with its description, and the notifications of a run. tests/e2e listens to one.

#include "pages/checkrow.h"
#include "pages/confirmuninstallpage.h"
#include "pages/destinationpage.h"
#include "pages/pagetext.h"
#include "widgets/radiooption.h"
#include "widgets/togglecheckbox.h"
#include "wizard/installertitlebar.h"
#include "wizard/wizardtest.h"

#include <QAccessible>
#include <QDir>
#include <QPlainTextEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Listener : WizardDriver
{
    using WizardDriver::WizardDriver;

    /// What comes with the focus.
    [[nodiscard]] static QString heard()
    {
        settle();
        QWidget *widget = QApplication::focusWidget();
        if (!widget)
            return u"no focus"_s;
        // Narrator reads the help text instead.
        auto *interface = QAccessible::queryAccessibleInterface(widget);
        const QString description = widget->accessibleDescription();
        return interface->text(QAccessible::Help) == description ? description : u"no help"_s;
    }
    [[nodiscard]] bool startUpdate()
    {
        sandbox.setScenario("stall = forever\nstatus-path = never\nlog-none = yes\n");
        return open(RunMode::Update) && pressAll({ u"Update Now"_s, u"Update"_s });
    }
    [[nodiscard]] bool finishes()
    {
        const QByteArray progressPage = currentPage()->metaObject()->className();
        return finishSimulation()
            && QTest::qWaitFor([&] { return !shows(progressPage); }, kPatience);
    }
    [[nodiscard]] Announcer *announcer() const { return wizard.findChild<Announcer *>(); }
    /// The notification that follows once all that was said has been heard.
    [[nodiscard]] QString next() const
    {
        TimerWatch::fire(announcer()->findChild<QTimer *>(), 1);
        return announcer()->text();
    }
};

} // namespace

class TestInstallerWizardKeyboard : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void enterGoesOnFromEveryControl();
    void enterPressesDangerOnlyWithFocus();
    void focusAndTabOrder();
    void firstPageIsReadWithTheWindow();
    void installation();
    void findings();
    void stateOfABoxIsSaid();
    void pageIsSaidOnce();
    void helpTextIsNotShown();
    void runIsToldAsItGoes();
    void failureIsSaidAlone();
    void endOfARunIsSaidAlone();
};

// Escape goes back. The focus never passes the title bar, as every stop would be said. Without
// motion, a page goes the moment the next one comes.
void TestInstallerWizardKeyboard::enterGoesOnFromEveryControl()
{
    qputenv("VARNEL_REDUCED_MOTION", "1");
    Listener driver { QString() };
    QVERIFY(driver.open(RunMode::Install));
    QList<QWidget *> stops;
    connect(qApp, &QApplication::focusChanged, &driver.wizard, [&](QWidget *, QWidget *now) {
        if (driver.titleBar->isAncestorOf(now))
            stops += now;
    });
    driver.key(Qt::Key_Return);
    driver.key(Qt::Key_Return); // Next is disabled
    QVERIFY(driver.shows("LicensePage"));
    driver.key(Qt::Key_Down);
    const QList<QWidget *> controls { driver.find<QPlainTextEdit>(), driver.find<RadioOption>() };
    for (QWidget *control : controls) {
        control->setFocus();
        driver.key(Qt::Key_Return);
        QVERIFY2(driver.shows("SystemCheckPage"), control->metaObject()->className());
        driver.key(Qt::Key_Escape);
        QVERIFY(driver.shows("LicensePage"));
    }
    driver.key(Qt::Key_Return);
    driver.key(Qt::Key_Enter);
    driver.currentPage()->findChild<QPushButton *>()->setFocus();
    driver.key(Qt::Key_Return);
    QVERIFY(driver.shows("TasksPage"));
    auto *shortcut = driver.currentPage()->findChild<ToggleCheckbox *>();
    shortcut->setFocus();
    driver.key(Qt::Key_Return);
    QVERIFY(driver.shows("ReadyPage"));
    QVERIFY(shortcut->isChecked());
    // A key that is held down must not rush through the pages and start a run.
    for (Qt::Key key : { Qt::Key_Return, Qt::Key_Escape }) {
        QKeyEvent repeated(QEvent::KeyPress, key, Qt::NoModifier, {}, true);
        QCoreApplication::sendEvent(&driver.wizard, &repeated);
        QVERIFY(driver.shows("ReadyPage"));
    }
    driver.key(Qt::Key_Return);
    // During the run, the keys do nothing. The button that has started it is gone, and the focus
    // does not turn up on another.
    for (Qt::Key key : { Qt::Key_Return, Qt::Key_Escape, Qt::Key_Space }) {
        driver.key(key);
        QCOMPARE(Listener::focus(), u"InstallingPage"_s);
        QVERIFY(driver.wizard.isVisible());
    }
    QVERIFY(driver.finishes());
    QCOMPARE(Listener::focus(), kOpen);
    QCOMPARE(stops, QList<QWidget *>());
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

void TestInstallerWizardKeyboard::focusAndTabOrder()
{
    const QStringList title { u"–"_s, u"✕"_s };
    const QString license = u"QPlainTextEdit"_s;
    WizardDriver driver;
    QVERIFY(driver.open(RunMode::Install));
    QCOMPARE(WizardDriver::focus(), u"Next"_s);

    // What has to be answered first, where Next is disabled.
    QVERIFY(driver.press(u"Next"_s));
    QCOMPARE(WizardDriver::focus(), kDecline);
    QCOMPARE(driver.tabOrder(), title + QStringList({ license, kDecline, u"Back"_s }));
    QVERIFY(driver.click(kAccept));
    QCOMPARE(driver.tabOrder(), title + QStringList({ license, kAccept, u"Back"_s, u"Next"_s }));

    QVERIFY(driver.pressAll({ u"Next"_s, u"Next"_s }));
    QCOMPARE(WizardDriver::focus(), u"Next"_s);
    QCOMPARE(driver.tabOrder(), title + QStringList({ u"Change"_s, u"Back"_s, u"Next"_s }));
    QVERIFY(driver.press(u"Next"_s));
    QCOMPARE(driver.tabOrder(), title + QStringList({ kShortcut, u"Back"_s, u"Next"_s }));

    // The way back from what cannot be undone.
    WizardDriver uninstall;
    QVERIFY(uninstall.open(RunMode::Uninstall));
    QCOMPARE(WizardDriver::focus(), u"Cancel"_s);
    QCOMPARE(uninstall.tabOrder(),
             title + QStringList({ kDeletePreferences, u"Cancel"_s, u"Uninstall"_s }));
}

// As a whole, by the screen reader itself.
void TestInstallerWizardKeyboard::firstPageIsReadWithTheWindow()
{
    Listener driver;
    QVERIFY(driver.open(RunMode::Update));
    QCOMPARE(Listener::heard(), QString());
    QVERIFY(driver.pressAll({ u"Update Now"_s, u"Back"_s }));
    QVERIFY(Listener::heard().startsWith(u"Update Available for Varnel Schematics. "_s));
    QVERIFY(Listener::heard().endsWith(u". Installed not found. Available 1.6.9."_s));
}

void TestInstallerWizardKeyboard::installation()
{
    const QString path = QDir::toNativeSeparators(u"/opt/a  b/"_s + kLiteral);
    Listener driver { QString() };
    QVERIFY(driver.open(RunMode::Install));
    QVERIFY(driver.press(u"Next"_s) && driver.click(kAccept) && driver.press(u"Next"_s));
    QVERIFY(Listener::heard().startsWith(u"Checking your system. "_s));
    QVERIFY(driver.press(u"Back"_s)); // with the answer given, the focus is on Next
    QVERIFY(Listener::heard().startsWith(u"License Agreement. "_s));
    QVERIFY(driver.pressAll({ u"Next"_s, u"Next"_s }));
    driver.find<DestinationPage>()->setPath(path);
    QVERIFY(driver.pressAll({ u"Next"_s, u"Back"_s }));
    const QString destination = Listener::heard();
    QVERIFY2(destination.contains(u" folder. INSTALL TO. "_s + path + u". 220 MB required"_s),
             qPrintable(destination));
    QVERIFY(driver.pressAll({ u"Next"_s, u"Next"_s }));
    const QString ready = Listener::heard();
    QVERIFY2(ready.endsWith(u" on your computer. Destination location: "_s + path
                            + u". Additional tasks: Create a desktop shortcut."_s),
             qPrintable(ready));
    QVERIFY(driver.press(u"Install"_s));
    QVERIFY(driver.finishes());
    QCOMPARE(Listener::heard(),
             u"Varnel Schematics is installed. Installed to "_s + path
                 + u". A shortcut is on your desktop."_s);
}

void TestInstallerWizardKeyboard::findings()
{
    SystemCheckPage page;
    page.runChecks({});
    page.setSmartAppControlOn(false);
    const auto setAll = [&page](const QStringList &shortcomings) {
        for (auto *row : page.findChildren<SystemCheckPage::CheckRow *>()) {
            const QString label = row->result().label;
            row->setResult({ label, u"Found"_s, !shortcomings.contains(label) });
        }
    };
    setAll({});
    QCOMPARE(page.spokenSummary(),
             u"Checking your system. Requirements checked: 9. All are met."_s);
    setAll({ u"Memory"_s, u".NET Framework"_s });
    QCOMPARE(page.spokenSummary(),
             u"Checking your system. Requirements checked: 9. Need attention: Memory: Found. "
             ".NET Framework: Found."_s);
    page.setSmartAppControlOn(true);
    QVERIFY(page.spokenSummary().contains(
        u". Smart App Control will block Varnel Schematics from starting. "_s));
}

void TestInstallerWizardKeyboard::stateOfABoxIsSaid()
{
    ConfirmUninstallPage page;
    QVERIFY(page.spokenSummary().endsWith(u" will not be deleted. "_s + kDeletePreferences
                                          + u", not checked."));
    page.findChild<ToggleCheckbox *>()->setChecked(true);
    QVERIFY(page.spokenSummary().endsWith(kDeletePreferences + u", checked."));
}

// A control to which the focus comes back does not say the page again.
void TestInstallerWizardKeyboard::pageIsSaidOnce()
{
    Listener driver;
    QVERIFY(driver.open(RunMode::Install));
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(!Listener::heard().isEmpty());
    for (Qt::Key key : { Qt::Key_Down, Qt::Key_Up }) {
        driver.key(key);
        QCOMPARE(Listener::heard(), QString());
    }
}

// It would be taken for markup if there is a path in it.
void TestInstallerWizardKeyboard::helpTextIsNotShown()
{
    Listener driver;
    QVERIFY(driver.open(RunMode::Install));
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(!Listener::heard().isEmpty());
    const qsizetype windows = QApplication::topLevelWidgets().size();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F1, Qt::ShiftModifier);
    QCOMPARE(QApplication::topLevelWidgets().size(), windows);
}

void TestInstallerWizardKeyboard::runIsToldAsItGoes()
{
    Listener driver;
    QVERIFY(driver.startUpdate());
    QCOMPARE(Listener::heard(), u"Updating. Roughly a minute. You can keep using your PC."_s);
    Q_EMIT driver.engine.statusChanged(u"Extracting files…"_s);
    Q_EMIT driver.engine.progress(0.1);
    QCOMPARE(driver.announcer()->text(), QString()); // there is time to hear what is said
    QCOMPARE(driver.next(), u"Backing up your settings. Extracting files…"_s);
    Q_EMIT driver.engine.currentFile(u"a.dll"_s); // too many to be told
    Q_EMIT driver.engine.progress(0.2);
    QCOMPARE(driver.next(), u"Backing up your settings. Extracting files…"_s);
    Q_EMIT driver.engine.progress(0.5);
    QTRY_COMPARE_WITH_TIMEOUT(driver.announcer()->text(), u"Migrating configuration."_s, kPatience);
}

// The focus comes with the message, and cuts short what was said just before.
void TestInstallerWizardKeyboard::failureIsSaidAlone()
{
    Listener driver;
    QVERIFY(driver.startUpdate());
    Q_EMIT driver.engine.progress(0.1);
    QCOMPARE(driver.next(), u"Backing up your settings."_s);
    Q_EMIT driver.engine.progress(0.6); // is still to be told
    Q_EMIT driver.engine.finished(false, u"A <b>fatal</b> error.  The disk is full."_s);
    QCOMPARE(Listener::focus(), u"Close"_s);
    QCOMPARE(Listener::heard(), u"A <b>fatal</b> error.  The disk is full."_s);
    QVERIFY(!driver.announcer()->isRunning());
    QCOMPARE(driver.next(), u"Backing up your settings."_s);
}

void TestInstallerWizardKeyboard::endOfARunIsSaidAlone()
{
    Listener driver;
    QVERIFY(driver.startUpdate());
    QCOMPARE(driver.next(), QString());
    Q_EMIT driver.engine.progress(1.0); // as the engine does
    Q_EMIT driver.engine.finished(true, {});
    QVERIFY(!driver.announcer()->isRunning());
    QVERIFY(driver.comesTo("UpdateFinishedPage"));
    QVERIFY(Listener::heard().startsWith(u"Varnel Schematics has been updated. "_s));
    QCOMPARE(driver.announcer()->text(), QString());
}

QTEST_MAIN(TestInstallerWizardKeyboard)
#include "tst_installerwizard_keyboard.moc"
