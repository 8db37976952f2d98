// Runs that fail, and what can be done then.

#include "pages/pagetext.h"
#include "theme/themed.h"
#include "widgets/animatedmark.h"
#include "wizard/keyguard.h"
#include "wizard/wizardtest.h"

#include <QAccessible>
#include <QDir>
#include <QSignalSpy>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kFailed = u"Setup could not finish"_s;
constexpr char kStalled[] = "stall = forever\n";

/// Whether a failed run is shown, with that message.
bool showsFailure(const WizardDriver &driver, const QString &message)
{
    const QLabel *caption = driver.progress().caption;
    const bool shown = driver.status() == kFailed
        && driver.buttons() == QStringList { u"Close danger"_s } && caption->text() == message
        && caption->palette().color(QPalette::WindowText) == themedColor(u"@INS_RED"_s);
    if (!shown)
        qInfo() << driver.status() << driver.buttons() << caption->text();
    return shown;
}

/// A wizard whose run fails when it is told to.
struct Failure : WizardDriver
{
    [[nodiscard]] bool fails()
    {
        sandbox.setScenario(kStalled);
        if (!startRun(RunMode::Update) || !QTest::qWaitForWindowActive(&wizard))
            return false;
        if (heldKey)
            send(QEvent::KeyPress, *heldKey);
        // Nothing else happens until the event loop runs.
        Q_EMIT engine.finished(false, u"The disk is full."_s);
        return guard()->isActive();
    }
    [[nodiscard]] QTimer *guard() const
    {
        return wizard.findChild<KeyGuard *>()->findChild<QTimer *>();
    }
    void passHalfASecond() const { TimerWatch::fire(guard(), 1); }
    [[nodiscard]] bool isOpen() const { return wizard.isVisible(); }

    /// One event of a key, to whatever has the focus, right now.
    static void send(QEvent::Type type, Qt::Key key, bool isRepeated = false)
    {
        QKeyEvent event(type, key, Qt::NoModifier, key == Qt::Key_Space ? u" "_s : QString(),
                        isRepeated);
        QCoreApplication::sendEvent(QApplication::focusWidget(), &event);
    }

    std::optional<Qt::Key> heldKey; ///< since before the failure
};

} // namespace

class TestInstallerWizardFaults : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void endings_data();
    void endings();
    void missingPrograms();
    void updateWithoutAFolder();
    void failedUninstallKeepsThePreferences();
    void failureIsFinal();
    void keysAreIgnoredForHalfASecond_data();
    void keysAreIgnoredForHalfASecond();
    void heldKeyIsIgnored_data() { keysAreIgnoredForHalfASecond_data(); }
    void heldKeyIsIgnored();
    void otherInputWorksAtOnce();
};

void TestInstallerWizardFaults::endings_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("before anything was written")
        << QByteArray("finish-at-once = yes\nexit-code = 5\n")
        << u"Installation was cancelled during setup."_s;
    QTest::newRow("crash") << QByteArray("crash = 9\nstage = start\n") << QString();
    QTest::newRow("markup") << QByteArray("exit-code = 4\nmessage-box = a&b <i>%2 %1</i>\n")
                            << kLiteral;
}

// The engine's sentence is shown as it is, and the log that it names is kept.
void TestInstallerWizardFaults::endings()
{
    QFETCH(QByteArray, scenario);
    QFETCH(QString, sentence);
    WizardDriver driver;
    driver.sandbox.setScenario(scenario);
    const QSignalSpy finished(&driver.engine, &InstallerEngine::finished);
    QVERIFY(driver.startRun(RunMode::Install));
    QTRY_COMPARE_WITH_TIMEOUT(driver.status(), kFailed, kPatience);
    QCOMPARE(finished.size(), 1);
    const QString error = finished.first().at(1).toString();
    QVERIFY(!error.isEmpty());
    QVERIFY2(error.contains(sentence), qPrintable(error));
    QVERIFY(driver.shows("InstallingPage"));
    QVERIFY(showsFailure(driver, error));
    if (sentence == kLiteral) {
        const QString log =
            QDir::toNativeSeparators(driver.sandbox.tempFolder() + u"/varnel_setup_last.log");
        QVERIFY2(error.endsWith(u"  "_s + kLiteral + u"  (log: " + log + u')'), qPrintable(error));
        driver.engine.stop();
        QCOMPARE(driver.sandbox.tempFiles(), QStringList { u"varnel_setup_last.log"_s });
    }
    QCOMPARE(WizardDriver::runUntilQuit([&] { QVERIFY(driver.press(u"Close"_s)); }), 0);
    QVERIFY(!driver.wizard.isVisible());
    QVERIFY(driver.sandbox.read(u"launches.txt"_s).isEmpty());
}

void TestInstallerWizardFaults::missingPrograms()
{
    // That of the uninstaller is reported while the run is still being started.
    for (RunMode mode : { RunMode::Update, RunMode::Uninstall }) {
        WizardDriver driver;
        driver.engine.setSetupExecutable(driver.sandbox.path(u"no/such/setup.exe"_s));
        driver.wizard.setUninstallerPath(driver.sandbox.path(u"no/such/unins000.exe"_s));
        const QSignalSpy finished(&driver.engine, &InstallerEngine::finished);
        QVERIFY(driver.startRun(mode));
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, kPatience);
        QVERIFY(driver.shows(progressPage(mode)));
        QVERIFY(showsFailure(driver, finished.first().at(1).toString()));
    }
}

// The engine knows where its earlier copy is; any other folder would make a second one.
void TestInstallerWizardFaults::updateWithoutAFolder()
{
    WizardDriver driver;
    driver.sandbox.recordInstallation(u"1.6.8"_s, QString());
    driver.sandbox.setScenario("finish-at-once = yes\n");
    QVERIFY(driver.startRun(RunMode::Update));
    QTRY_COMPARE_WITH_TIMEOUT(driver.sandbox.engineRuns().size(), 1, kPatience);
    QCOMPARE(driver.sandbox.engineRuns().first().filter(u"/DIR="_s), QStringList { u"/DIR="_s });
}

void TestInstallerWizardFaults::failedUninstallKeepsThePreferences()
{
    WizardDriver driver;
    driver.sandbox.write(kPreferences, "colour = blue\n");
    driver.wizard.setUninstallerPath(Sandbox::setupEngine());
    driver.sandbox.setScenario("finish-at-once = yes\nexit-code = 1\n");
    driver.show(RunMode::Uninstall);
    QVERIFY(driver.click(kDeletePreferences));
    QVERIFY(driver.press(u"Uninstall"_s));
    QTRY_COMPARE_WITH_TIMEOUT(driver.status(), kFailed, kPatience);
    QVERIFY(driver.shows("UninstallingPage"));
    QCOMPARE(driver.sandbox.read(kPreferences), QByteArray("colour = blue\n"));
}

// Neither a late signal of the engine nor a pending timer leads away from it.
void TestInstallerWizardFaults::failureIsFinal()
{
    WizardDriver driver;
    driver.sandbox.setScenario(kStalled);
    QVERIFY(driver.startRun(RunMode::Install));
    Q_EMIT driver.engine.progress(0.3);
    Q_EMIT driver.engine.finished(false, QString());
    const QString message = u"Setup did not complete."_s;
    QVERIFY(showsFailure(driver, message));
    Q_EMIT driver.engine.progress(0.9);
    Q_EMIT driver.engine.currentFile(u"late.dll"_s);
    Q_EMIT driver.engine.statusChanged(u"Late"_s);
    Q_EMIT driver.engine.finished(true, QString());
    QVERIFY(!driver.finishDelay()->isActive());
    QVERIFY(driver.shows("InstallingPage"));
    QVERIFY(showsFailure(driver, message));
    QCOMPARE(driver.progress().percent->text(), u"30%"_s);
    QVERIFY(driver.progress().file->text().isEmpty());
    QCOMPARE(driver.mark->fill(), 0.3);
}

void TestInstallerWizardFaults::keysAreIgnoredForHalfASecond_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("enter") << Qt::Key_Enter;
    QTest::newRow("space") << Qt::Key_Space;
    QTest::newRow("escape") << Qt::Key_Escape;
}

// A user who types ahead has not seen the failure yet.
void TestInstallerWizardFaults::keysAreIgnoredForHalfASecond()
{
    QFETCH(const Qt::Key, key);
    Failure driver;
    QVERIFY(driver.fails());
    QCOMPARE(QApplication::focusWidget(), driver.button(u"Close"_s));
    QCOMPARE(driver.guard()->interval(), 500);
    Failure::send(QEvent::KeyPress, key);
    QVERIFY(driver.isOpen());
    QVERIFY(!driver.button(u"Close"_s)->isDown());
    Failure::send(QEvent::KeyRelease, key);
    QVERIFY(driver.isOpen());
    // The focus may be elsewhere; without a window in front there is none at all.
    QKeyEvent toTheWindow(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&driver.wizard, &toTheWindow);
    QVERIFY(driver.isOpen());
    // Nor does what began within the half second and ends after it.
    Failure::send(QEvent::KeyPress, key);
    driver.passHalfASecond();
    Failure::send(QEvent::KeyRelease, key);
    QVERIFY(driver.isOpen());

    QVERIFY(!driver.guard()->isActive());
    if (key == Qt::Key_Return) { // needs the focus
        driver.minimizeButton()->setFocus();
        driver.key(key);
        QVERIFY(driver.isOpen());
        driver.button(u"Close"_s)->setFocus();
    }
    QCOMPARE(Failure::runUntilQuit([&] { driver.lastKey(key); }), 0);
    QVERIFY(!driver.isOpen());
}

// From before the failure until long after it.
void TestInstallerWizardFaults::heldKeyIsIgnored()
{
    QFETCH(const Qt::Key, key);
    Failure driver;
    driver.heldKey = key;
    QVERIFY(driver.fails());
    Failure::send(QEvent::KeyPress, key, true);
    driver.passHalfASecond();
    Failure::send(QEvent::KeyPress, key, true);
    Failure::send(QEvent::KeyRelease, key);
    QVERIFY(driver.isOpen());
}

void TestInstallerWizardFaults::otherInputWorksAtOnce()
{
    Failure byMouse;
    QVERIFY(byMouse.fails());
    Failure::send(QEvent::KeyPress, Qt::Key_Tab);
    QVERIFY(QApplication::focusWidget() != byMouse.button(u"Close"_s));
    QVERIFY(byMouse.guard()->isActive());
    QTest::mouseClick(byMouse.button(u"Close"_s), Qt::LeftButton);
    QVERIFY(!byMouse.isOpen());

    Failure byAssistiveTechnology;
    QVERIFY(byAssistiveTechnology.fails());
    QAccessibleInterface *close =
        QAccessible::queryAccessibleInterface(byAssistiveTechnology.button(u"Close"_s));
    QVERIFY(close && !close->state().disabled);
    close->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QTRY_VERIFY_WITH_TIMEOUT(!byAssistiveTechnology.isOpen(), kPatience);
}

QTEST_MAIN(TestInstallerWizardFaults)
#include "tst_installerwizard_faults.moc"
