// What somebody hears who cannot see the window: a screen reader says what takes the focus, with
// its description, and the notifications of a run.

#include "app/applicationfonts.h"
#include "pages/checkrow.h"
#include "pages/confirmuninstallpage.h"
#include "pages/destinationpage.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "theme/thememanager.h"
#include "widgets/togglecheckbox.h"
#include "wizard/keyboard.h"

#include <QDir>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Listener : Keyboard
{
    using Keyboard::Keyboard;

    /// What comes with the focus.
    [[nodiscard]] static QString heard()
    {
        settle();
        const QWidget *widget = QApplication::focusWidget();
        return widget ? widget->accessibleDescription() : u"no focus"_s;
    }
    [[nodiscard]] bool startRun(RunMode mode)
    {
        sandbox.setScenario("stall = forever\nstatus-path = never\nlog-none = yes\n");
        return open(mode) && pressAll({ u"Update Now"_s, u"Update"_s });
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

class TestInstallerWizardSpeech : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void firstPageIsReadWithTheWindow_data();
    void firstPageIsReadWithTheWindow();
    void installation();
    void licenseThatIsAccepted();
    void update();
    void removal();
    void findings();
    void boxesAsTheyAre();
    void pathsLiterally();
    void saidOnce();
    void focusTakesNoDetour();
    void runIsSaidAsItBegins();
    void runIsToldAsItGoes();
    void simulationIsToldToo();
    void failureIsSaidAlone();
    void endOfARunIsSaidAlone();
};

void TestInstallerWizardSpeech::initTestCase()
{
    QApplication::setQuitOnLastWindowClosed(false);
    registerApplicationFonts();
}

void TestInstallerWizardSpeech::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestInstallerWizardSpeech::firstPageIsReadWithTheWindow_data()
{
    QTest::addColumn<RunMode>("mode");
    QTest::newRow("install") << RunMode::Install;
    QTest::newRow("update") << RunMode::Update;
    QTest::newRow("uninstall") << RunMode::Uninstall;
}

void TestInstallerWizardSpeech::firstPageIsReadWithTheWindow()
{
    QFETCH(const RunMode, mode);
    Listener driver;
    QVERIFY(driver.open(mode));
    QCOMPARE(Listener::heard(), QString());
}

void TestInstallerWizardSpeech::installation()
{
    Listener driver { QString() };
    QVERIFY(driver.open(RunMode::Install));
    const QString path = driver.find<DestinationPage>()->path();

    QVERIFY(driver.press(u"Next"_s));
    QCOMPARE(Listener::heard(),
             u"License Agreement. Please read the following important information before "
             "continuing. Do you accept the license agreement?"_s);
    QVERIFY(driver.click(u"I accept the license agreement"_s));
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(Listener::heard().startsWith(u"Checking your system. Requirements checked: 9. "_s));
    QVERIFY(driver.press(u"Next"_s));
    const QString room = Listener::heard();
    QVERIFY(room.startsWith(u"Select Destination Location. Setup will install Varnel Schematics "
                            "into the following folder. INSTALL TO. "_s
                            + path + u". 220 MB required"_s));
    QVERIFY(driver.press(u"Next"_s));
    QCOMPARE(Listener::heard(),
             u"Select Additional Tasks. Which additional task should be performed while "
             "installing Varnel Schematics? Create a desktop shortcut, checked."_s);
    QVERIFY(driver.press(u"Next"_s));
    QCOMPARE(Listener::heard(),
             u"Ready to Install. Setup is now ready to begin installing Varnel Schematics on "
             "your computer. Destination location: "_s
                 + path + u". Additional tasks: Create a desktop shortcut."_s);
    QVERIFY(driver.press(u"Back"_s)); // the way back is told like the way on
    QVERIFY(Listener::heard().startsWith(u"Select Additional Tasks. "_s));
    QVERIFY(driver.pressAll({ u"Next"_s, u"Install"_s }));
    QVERIFY(driver.finishSimulation());
    QTRY_VERIFY_WITH_TIMEOUT(driver.button(u"Open Varnel Schematics"_s), kPatience);
    QCOMPARE(Listener::heard(),
             u"Varnel Schematics is installed. Installed to "_s + path
                 + u". A shortcut is on your desktop."_s);
}

void TestInstallerWizardSpeech::licenseThatIsAccepted()
{
    Listener driver;
    QVERIFY(driver.open(RunMode::Install));
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(driver.click(u"I accept the license agreement"_s));
    QVERIFY(driver.pressAll({ u"Next"_s, u"Back"_s }));
    QCOMPARE(driver.focus(), u"Next"_s);
    QVERIFY(Listener::heard().startsWith(u"License Agreement. "_s));
}

void TestInstallerWizardSpeech::update()
{
    Listener driver { QString() };
    const QString folder = driver.sandbox.nativePath(u"Tools & Co"_s);
    driver.sandbox.recordInstallation(u"1.6.8"_s, folder);
    QVERIFY(driver.open(RunMode::Update));
    QVERIFY(driver.press(u"Update Now"_s));
    QCOMPARE(Listener::heard(),
             u"Ready to Update. Setup will update Varnel Schematics to version 1.6.9. "
             "Destination location: "_s
                 + folder + u". Your preferences and license will be kept."_s);
    QVERIFY(driver.press(u"Back"_s));
    QCOMPARE(Listener::heard(),
             u"Update Available for Varnel Schematics. A newer version is ready to install. "
             "Your settings and files will be kept. Installed 1.6.8. Available 1.6.9."_s);
    QVERIFY(driver.pressAll({ u"Update Now"_s, u"Update"_s }));
    QVERIFY(driver.finishSimulation());
    QTRY_VERIFY_WITH_TIMEOUT(driver.button(u"Open Varnel Schematics"_s), kPatience);
    QCOMPARE(Listener::heard(),
             u"Varnel Schematics has been updated. Now running version 1.6.9. Your settings were "
             "preserved."_s);
}

void TestInstallerWizardSpeech::removal()
{
    Listener driver { QString() };
    QVERIFY(driver.open(RunMode::Uninstall));
    QVERIFY(driver.press(u"Uninstall"_s));
    QCOMPARE(Listener::heard(), u"Uninstalling. Removing Varnel Schematics from your computer."_s);
    QVERIFY(driver.finishSimulation());
    QTRY_VERIFY_WITH_TIMEOUT(driver.button(u"Close"_s), kPatience);
    QCOMPARE(Listener::heard(),
             u"See You Later! Varnel Schematics has been removed from your computer. Your "
             "preferences were kept in case you're back soon."_s);
}

void TestInstallerWizardSpeech::findings()
{
    SystemCheckPage page;
    page.runChecks({});
    const QList<SystemCheckPage::CheckRow *> rows =
        page.findChildren<SystemCheckPage::CheckRow *>();
    page.setSmartAppControlOn(false);
    for (SystemCheckPage::CheckRow *row : rows)
        row->setResult({ u"Memory"_s, u"16 GB"_s, true });
    QCOMPARE(page.spokenSummary(),
             u"Checking your system. Requirements checked: 9. All are met."_s);

    rows[2]->setResult({ u"Memory"_s, u"2 GB"_s, false });
    rows[5]->setResult({ u".NET Framework"_s, u"Not detected"_s, false });
    QCOMPARE(page.spokenSummary(),
             u"Checking your system. Requirements checked: 9. Need attention: Memory: 2 GB. "
             ".NET Framework: Not detected."_s);
    page.setSmartAppControlOn(true);
    QVERIFY(page.spokenSummary().contains(
        u". Smart App Control will block Varnel Schematics from starting. "_s));
}

void TestInstallerWizardSpeech::boxesAsTheyAre()
{
    ConfirmUninstallPage page;
    QVERIFY(page.spokenSummary().endsWith(
        u"This cannot be undone. Your project files (.sch, .pcb) will not be deleted. Also delete "
        "my preferences and cached data, not checked."_s));
    page.findChild<ToggleCheckbox *>()->setChecked(true);
    QVERIFY(page.spokenSummary().endsWith(u"cached data, checked."_s));
}

void TestInstallerWizardSpeech::pathsLiterally()
{
    const QString path = QDir::toNativeSeparators(u"/opt/a  b/"_s + kLiteral);
    Listener driver { QString() };
    QVERIFY(driver.open(RunMode::Install));
    QVERIFY(driver.goToReadyPage(path));
    QVERIFY2(Listener::heard().contains(u": "_s + path + u". "_s), qPrintable(Listener::heard()));
    QVERIFY(driver.pressAll({ u"Back"_s, u"Back"_s }));
    QVERIFY2(Listener::heard().contains(u" "_s + path + u". "_s), qPrintable(Listener::heard()));
}

// Who comes back to a control has heard the page, which was said with it.
void TestInstallerWizardSpeech::saidOnce()
{
    Listener driver;
    QVERIFY(driver.open(RunMode::Install));
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(!Listener::heard().isEmpty());
    driver.key(Qt::Key_Down);
    QCOMPARE(Listener::heard(), QString());
    driver.key(Qt::Key_Up);
    QCOMPARE(Listener::heard(), QString());
    driver.key(Qt::Key_Down);
    QVERIFY(driver.press(u"Next"_s));
    QVERIFY(!Listener::heard().isEmpty());
    driver.key(Qt::Key_Tab);
    QCOMPARE(Listener::heard(), QString());
    driver.key(Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(driver.focus(), u"Next"_s);
    QCOMPARE(Listener::heard(), QString());
}

// Every stop would be said. Without motion, a page goes the moment the next one comes.
void TestInstallerWizardSpeech::focusTakesNoDetour()
{
    qputenv("VARNEL_REDUCED_MOTION", "1");
    const auto cleanup = qScopeGuard([] { qunsetenv("VARNEL_REDUCED_MOTION"); });
    Listener driver { QString() };
    QVERIFY(driver.open(RunMode::Install));
    QList<QWidget *> stops;
    connect(qApp, &QApplication::focusChanged, &driver.wizard, [&](QWidget *, QWidget *now) {
        if (driver.titleBar->isAncestorOf(now))
            stops += now;
    });
    driver.key(Qt::Key_Return);
    driver.key(Qt::Key_Escape); // with the focus on an answer
    driver.key(Qt::Key_Return);
    driver.key(Qt::Key_Down);
    for (int i = 0; i < 5; ++i)
        driver.key(Qt::Key_Return);
    QVERIFY(driver.finishSimulation());
    QTRY_VERIFY_WITH_TIMEOUT(driver.button(u"Open Varnel Schematics"_s), kPatience);
    QCOMPARE(driver.focus(), u"Open Varnel Schematics"_s);
    QCOMPARE(stops, QList<QWidget *>());
}

void TestInstallerWizardSpeech::runIsSaidAsItBegins()
{
    Listener driver;
    QVERIFY(driver.startRun(RunMode::Update));
    QCOMPARE(Listener::heard(), u"Updating. Roughly a minute. You can keep using your PC."_s);
    // There is time to hear it.
    Q_EMIT driver.engine.progress(0.1);
    QCOMPARE(driver.announcer()->text(), QString());
}

void TestInstallerWizardSpeech::runIsToldAsItGoes()
{
    Listener driver;
    QVERIFY(driver.startRun(RunMode::Update));
    Q_EMIT driver.engine.statusChanged(u"Extracting files…"_s);
    Q_EMIT driver.engine.progress(0.1);
    QCOMPARE(driver.next(), u"Backing up your settings. Extracting files…"_s);
    Q_EMIT driver.engine.currentFile(u"a.dll"_s); // too many to be told
    Q_EMIT driver.engine.progress(0.2);
    QCOMPARE(driver.next(), u"Backing up your settings. Extracting files…"_s);
    Q_EMIT driver.engine.progress(0.5);
    QCOMPARE(driver.announcer()->text(), u"Migrating configuration."_s);
}

void TestInstallerWizardSpeech::simulationIsToldToo()
{
    Listener driver { QString() };
    QVERIFY(driver.open(RunMode::Uninstall));
    QVERIFY(driver.press(u"Uninstall"_s));
    QTRY_VERIFY_WITH_TIMEOUT(driver.shownSteps() > 0, kPatience);
    QVERIFY2(driver.next().startsWith(driver.steps()[driver.shownSteps() - 1]),
             qPrintable(driver.announcer()->text()));
}

// The focus comes with the message, and cuts short what was said just before.
void TestInstallerWizardSpeech::failureIsSaidAlone()
{
    Listener driver;
    QVERIFY(driver.startRun(RunMode::Update));
    Q_EMIT driver.engine.progress(0.1);
    QCOMPARE(driver.next(), u"Backing up your settings."_s);
    Q_EMIT driver.engine.progress(0.6); // is still to be told
    Q_EMIT driver.engine.finished(false, u"A <b>fatal</b> error.  The disk is full."_s);
    QCOMPARE(driver.focus(), u"Close"_s);
    QCOMPARE(Listener::heard(), u"A <b>fatal</b> error.  The disk is full."_s);
    QVERIFY(!driver.announcer()->isRunning());
    QCOMPARE(driver.next(), u"Backing up your settings."_s);
}

void TestInstallerWizardSpeech::endOfARunIsSaidAlone()
{
    Listener driver;
    QVERIFY(driver.startRun(RunMode::Update));
    QCOMPARE(driver.next(), QString());
    Q_EMIT driver.engine.finished(true, {});
    QCOMPARE(driver.shownSteps(), 4);
    QVERIFY(!driver.announcer()->isRunning());
    QTRY_VERIFY_WITH_TIMEOUT(driver.button(u"Open Varnel Schematics"_s), kPatience);
    QVERIFY(Listener::heard().startsWith(u"Varnel Schematics has been updated. "_s));
    QCOMPARE(driver.announcer()->text(), QString());
}

QTEST_MAIN(TestInstallerWizardSpeech)
#include "tst_installerwizard_speech.moc"
