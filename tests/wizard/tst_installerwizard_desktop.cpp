// What the desktop is told of a run.

#include "system/desktop.h"
#include "system/runguard.h"
#include "wizard/sessionend.h"
#include "wizard/wizardtest.h"

#include <QFileInfo>
#include <QSet>

#include <functional>
#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr char kWaiting[] = "stall = forever\nstage = before-status\n";

/// Writes down what the desktop is told. It must outlive the window.
class ListeningDesktop : public Desktop
{
public:
    ListeningDesktop() { setDesktop(this); }
    ~ListeningDesktop() override { setDesktop(nullptr); }
    Q_DISABLE_COPY_MOVE(ListeningDesktop)

    void setBlockReason(QWindow &window, const QString &reason) override
    {
        look(window);
        told.append(u"reason "_s + reason);
    }
    void keepAwake(bool on) override { told.append(on ? u"awake"_s : u"asleep"_s); }
    void showOnTaskBar(QWindow &window, Button button, double fraction) override
    {
        look(window);
        const QStringList names { u"plain"_s, u"waiting"_s, u"progress"_s, u"failure"_s };
        const bool hasFigure = button == Button::Progress;
        told.append(names[int(button)] + (hasFigure ? QString::number(fraction) : u""_s));
    }

    QStringList told;
    QSet<QWindow *> windows;
    std::function<void()> atEachCall = [] {};

private:
    void look(QWindow &window)
    {
        windows.insert(&window);
        atEachCall();
    }
};

QStringList beginning(const QString &reason)
{
    return { u"reason "_s + reason, u"awake"_s, u"waiting"_s };
}

const QStringList kEnd { u"reason "_s, u"asleep"_s, u"plain"_s };

} // namespace

class TestInstallerWizardDesktop : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void success_data();
    void success();
    void preferencesBelongToTheRun();
    void failure();
    void closing();
    void otherPage();
    void simulation();
};

void TestInstallerWizardDesktop::success_data()
{
    QTest::addColumn<RunMode>("mode");
    QTest::addColumn<QString>("reason");
    QTest::newRow("install") << RunMode::Install << u"Varnel Schematics is being installed."_s;
    QTest::newRow("update") << RunMode::Update << u"Varnel Schematics is being updated."_s;
    QTest::newRow("uninstall") << RunMode::Uninstall << u"Varnel Schematics is being removed."_s;
}

void TestInstallerWizardDesktop::success()
{
    QFETCH(RunMode, mode);
    QFETCH(QString, reason);
    ListeningDesktop desktop;
    WizardDriver driver;
    driver.sandbox.setScenario(kWaiting);
    driver.wizard.setUninstallerPath(Sandbox::setupEngine());
    driver.show(mode);
    QVERIFY(sessionMayEnd().value_or(true));
    QCOMPARE(desktop.told, QStringList());
    QVERIFY(driver.pressOnToTheRun(mode));
    QCOMPARE(desktop.told, beginning(reason));
    QVERIFY(!sessionMayEnd().value_or(false));

    desktop.told.clear();
    Q_EMIT driver.engine.progress(0.25);
    Q_EMIT driver.engine.progress(0.5);
    QCOMPARE(desktop.told, (QStringList { u"progress0.25"_s, u"progress0.5"_s }));
    QVERIFY(!sessionMayEnd().value_or(false));

    desktop.told.clear();
    Q_EMIT driver.engine.finished(true, QString());
    QVERIFY(driver.shows(progressPage(mode)));
    QCOMPARE(desktop.told, kEnd);
    QVERIFY(sessionMayEnd().value_or(true));
    QCOMPARE(desktop.windows, QSet<QWindow *> { driver.wizard.windowHandle() });
}

void TestInstallerWizardDesktop::preferencesBelongToTheRun()
{
    ListeningDesktop desktop;
    WizardDriver driver;
    driver.sandbox.setScenario(kWaiting);
    driver.sandbox.write(kPreferences, "colour = blue\n");
    driver.wizard.setUninstallerPath(Sandbox::setupEngine());
    driver.show(RunMode::Uninstall);
    QVERIFY(driver.click(kDeletePreferences) && driver.press(u"Uninstall"_s));
    QList<bool> areThere;
    desktop.atEachCall = [&] {
        areThere.append(QFileInfo::exists(driver.sandbox.path(kPreferences)));
    };
    Q_EMIT driver.engine.finished(true, QString());
    QCOMPARE(areThere, (QList<bool> { false, false }));
}

void TestInstallerWizardDesktop::failure()
{
    ListeningDesktop desktop;
    auto driver = std::make_unique<WizardDriver>();
    driver->sandbox.setScenario("exit-code = 4\nstage = before-status\n");
    QVERIFY(driver->startRun(RunMode::Install));
    QTRY_VERIFY_WITH_TIMEOUT(driver->button(u"Close"_s), kPatience);
    const QStringList start = beginning(u"Varnel Schematics is being installed."_s);
    const QStringList failure { u"reason "_s, u"asleep"_s, u"failure"_s };
    QCOMPARE(desktop.told, start + failure);
    QVERIFY(sessionMayEnd().value_or(true));
    // The button stays red until the window is destroyed.
    driver.reset();
    QCOMPARE(desktop.told, start + failure + QStringList { u"plain"_s });
}

void TestInstallerWizardDesktop::closing()
{
    ListeningDesktop desktop;
    auto driver = std::make_unique<WizardDriver>();
    driver->sandbox.setScenario(kWaiting);
    QVERIFY(driver->startRun(RunMode::Install));
    QTRY_VERIFY_WITH_TIMEOUT(!driver->sandbox.tempFiles().isEmpty(), kPatience); // the log
    desktop.told.clear();
    QCOMPARE(WizardDriver::runUntilQuit(
                 [&] { QTest::mouseClick(driver->closeButton(), Qt::LeftButton); }),
             0);
    // At the end of a session the process may be killed right after aboutToQuit(), so the files
    // must be gone by then.
    QCOMPARE(driver->sandbox.tempFiles(), QStringList());
    driver.reset();
    QCOMPARE(desktop.told, kEnd);
    QVERIFY(sessionMayEnd().value_or(true));
}

void TestInstallerWizardDesktop::otherPage()
{
    ListeningDesktop desktop;
    WizardDriver driver;
    driver.sandbox.setScenario(kWaiting);
    QVERIFY(driver.startRun(RunMode::Install));
    desktop.told.clear();
    driver.wizard.setRunMode(RunMode::Install);
    QCOMPARE(desktop.told, kEnd);
    QVERIFY(sessionMayEnd().value_or(true));
}

// A simulation changes nothing, so the session may end.
void TestInstallerWizardDesktop::simulation()
{
    ListeningDesktop desktop;
    WizardDriver driver { QString() };
    QVERIFY(driver.startRun(RunMode::Install));
    QVERIFY(sessionMayEnd().value_or(true));
    QVERIFY(driver.finishSimulation());
    QVERIFY(driver.comesTo("FinishedPage"));
    QCOMPARE(desktop.told, QStringList());
}

QTEST_MAIN(TestInstallerWizardDesktop)
#include "tst_installerwizard_desktop.moc"
