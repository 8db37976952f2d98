// Runs that succeed, with the real engine and as simulations.

#include "pages/destinationpage.h"
#include "pages/pagetext.h"
#include "system/installation.h"
#include "widgets/animatedmark.h"
#include "widgets/progresstrack.h"
#include "wizard/runplan.h"
#include "wizard/wizardtest.h"

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTimer>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kFinishing = u"Finishing up…"_s;
constexpr char kWaiting[] = "stall = forever\nstage = before-status\n";

/// Installs a copy into the driver's world, as it would be found by a later start of the wizard.
QString installCopy(WizardDriver &driver)
{
    const QString folder = driver.sandbox.nativePath(u"installed/Varnel Schematics"_s);
    QSignalSpy finished(&driver.engine, &InstallerEngine::finished);
    driver.engine.startInstall(folder, {});
    if (!finished.wait(kPatience) || !finished.first().first().toBool())
        qFatal("The copy could not be installed");
    driver.sandbox.adoptRegistry();
    return folder;
}

} // namespace

class TestInstallerWizardRuns : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void runIsShown_data();
    void runIsShown();
    void install();
    void update();
    void uninstall_data();
    void uninstall();
    void givenUninstallerGoesFirst();
    void abandonedRunIsIgnored();
    void simulation_data() { addModes(); }
    void simulation();
    void simulatesWithoutAnEngine_data();
    void simulatesWithoutAnEngine();
    void simulationEndsWithItsPage();
};

void TestInstallerWizardRuns::runIsShown_data()
{
    QTest::addColumn<RunMode>("mode");
    QTest::addColumn<bool>("isSimulated");
    QTest::newRow("install") << RunMode::Install << false;
    QTest::newRow("update") << RunMode::Update << false;
    QTest::newRow("uninstall") << RunMode::Uninstall << false;
    QTest::newRow("simulated uninstall") << RunMode::Uninstall << true;
}

void TestInstallerWizardRuns::runIsShown()
{
    QFETCH(RunMode, mode);
    QFETCH(bool, isSimulated);
    WizardDriver driver { isSimulated ? QString() : Sandbox::setupEngine() };
    driver.sandbox.setScenario(kWaiting);
    if (!isSimulated)
        driver.wizard.setUninstallerPath(Sandbox::setupEngine());
    QVERIFY(driver.startRun(mode));
    QVERIFY(driver.shows(progressPage(mode)));
    QCOMPARE(driver.status(), u"Do not turn off your PC"_s);
    QCOMPARE(driver.buttons(), QStringList { u"Cancel ghost disabled"_s });
    const ProgressParts shown = driver.progress();
    QCOMPARE(shown.stepTexts(), runSteps(mode, false));
    QCOMPARE(shown.shownSteps(), 0);
    QCOMPARE(shown.percent->text(), u"0%"_s);
    QVERIFY(shown.file->text().isEmpty());
    QCOMPARE(shown.barSweeps(), !isSimulated);
    QCOMPARE(driver.mark->fill(), mode == RunMode::Uninstall ? 1.0 : 0.0);
    QCOMPARE(driver.mark->driftOffset(), 0.0); // it rests
    QTest::mouseClick(driver.button(u"Cancel"_s), Qt::LeftButton);
    QVERIFY(driver.shows(progressPage(mode)));
    QVERIFY(driver.wizard.isVisible());
    if (isSimulated)
        return;

    Q_EMIT driver.engine.currentFile(kLiteral);
    Q_EMIT driver.engine.statusChanged(u"Working…"_s);
    QVERIFY(shown.barSweeps()); // until there is a figure
    Q_EMIT driver.engine.progress(0.3);
    QVERIFY(!shown.barSweeps());
    QCOMPARE(shown.percent->text(), u"30%"_s);
    QCOMPARE(shown.track->target(), 0.3);
    QCOMPARE(driver.mark->fill(), mode == RunMode::Uninstall ? 1.0 - 0.3 : 0.3);
    QCOMPARE(shown.shownSteps(), 2);
    Q_EMIT driver.engine.progress(1.0);
    QCOMPARE(shown.file->text(), kLiteral);
    QCOMPARE(shown.caption->text(), u"Working…"_s);
    QVERIFY(driver.shows(progressPage(mode)));
}

void TestInstallerWizardRuns::install()
{
    WizardDriver driver;
    const QString folder = driver.sandbox.nativePath(u"Schaltpläne/電路"_s);
    driver.show(RunMode::Install);
    QVERIFY(driver.goToReadyPage(folder) && driver.press(u"Install"_s));
    driver.watch.clear();
    bool looked = false;
    connect(&driver.engine, &InstallerEngine::finished, this, [&] {
        looked = true;
        QCOMPARE(driver.progress().caption->text(), kFinishing);
        QCOMPARE(driver.progress().percent->text(), u"100%"_s);
        QCOMPARE(driver.progress().shownSteps(), 4);
        QCOMPARE(driver.mark->fill(), 1.0);
        QVERIFY(!driver.watch.shots().contains(kFinishDelay));
    });
    QVERIFY(driver.comesTo("FinishedPage"));
    QVERIFY(looked);
    QCOMPARE(driver.watch.shots().count(kFinishDelay), 1);
    QCOMPARE(driver.sandbox.engineRuns().size(), 1);
    const QStringList run = driver.sandbox.engineRuns().first();
    QCOMPARE(run.first(), QDir::toNativeSeparators(Sandbox::setupEngine()));
    QCOMPARE(run.sliced(1, 5),
             (QStringList { u"/VERYSILENT"_s, u"/SUPPRESSMSGBOXES"_s, u"/NORESTART"_s,
                            u"/DIR="_s + folder, u"/TASKS=desktopicon"_s }));
    QVERIFY(QFileInfo::exists(folder + u"/VarnelSolutions.exe"));
    QVERIFY(!QDir(driver.sandbox.path(u"desktop"_s)).isEmpty());
    QVERIFY(labelOf(driver.currentPage(),
                    u"Installed to "_s + folder + u".\nA shortcut is on your desktop."));
}

void TestInstallerWizardRuns::update()
{
    WizardDriver driver;
    const QString folder = installCopy(driver);
    driver.sandbox.write(kPreferences, "colour = blue\n");
    QVERIFY(driver.startRun(RunMode::Update));
    QVERIFY(driver.comesTo("UpdateFinishedPage"));
    const QStringList arguments = driver.sandbox.engineRuns().last();
    QVERIFY(arguments.contains(u"/DIR="_s + folder));
    // The shortcut is a matter of the installation.
    QVERIFY(arguments.contains(u"/TASKS="_s));
    QVERIFY(QDir(driver.sandbox.path(u"desktop"_s)).isEmpty());
    QCOMPARE(driver.sandbox.read(kPreferences), QByteArray("colour = blue\n"));
}

void TestInstallerWizardRuns::uninstall_data()
{
    QTest::addColumn<bool>("deletePreferences");
    QTest::newRow("with the preferences") << true;
    QTest::newRow("without the preferences") << false;
}

// The uninstaller is found in the registry. The preferences go after it has ended.
void TestInstallerWizardRuns::uninstall()
{
    QFETCH(bool, deletePreferences);
    WizardDriver driver;
    const QString folder = installCopy(driver);
    driver.sandbox.write(kPreferences, "colour = blue\n");
    const QString other = u"appdata/Varnel Schematics/Other/settings.ini"_s;
    driver.sandbox.write(other, "mine");
    driver.sandbox.setScenario("stall = 3\nstage = end\n");
    driver.show(RunMode::Uninstall);
    if (deletePreferences)
        QVERIFY(driver.click(kDeletePreferences));
    QVERIFY(driver.press(u"Uninstall"_s));
    QCOMPARE(driver.progress().stepTexts().size(), deletePreferences ? 5 : 4);
    QTRY_COMPARE_WITH_TIMEOUT(driver.progress().percent->text(), u"100%"_s, kPatience);
    QVERIFY(!driver.sandbox.read(kPreferences).isEmpty());
    QVERIFY(driver.comesTo("UninstallCompletePage"));
    QCOMPARE(driver.sandbox.engineRuns().last().first(),
             folder + QDir::separator() + u"unins000.exe");

    QVERIFY(!QFileInfo::exists(folder));
    driver.sandbox.adoptRegistry();
    QVERIFY(installedVersion().isEmpty());
    QCOMPARE(QFileInfo::exists(QFileInfo(driver.sandbox.path(kPreferences)).path()),
             !deletePreferences);
    QCOMPARE(driver.sandbox.read(other), QByteArray("mine"));
}

void TestInstallerWizardRuns::givenUninstallerGoesFirst()
{
    WizardDriver driver;
    const QString folder = installCopy(driver);
    const QString given = driver.sandbox.nativePath(u"given/unins000.exe"_s);
    QVERIFY(QDir().mkpath(QFileInfo(given).path()));
    QVERIFY(QFile::copy(Sandbox::setupEngine(), given));
    driver.wizard.setUninstallerPath(given);
    QVERIFY(driver.startRun(RunMode::Uninstall));
    QTRY_COMPARE_WITH_TIMEOUT(driver.sandbox.engineRuns().size(), 2, kPatience);
    QCOMPARE(driver.sandbox.engineRuns().last().first(), given);
    QVERIFY(QFileInfo::exists(folder));
}

void TestInstallerWizardRuns::abandonedRunIsIgnored()
{
    WizardDriver driver;
    driver.sandbox.setScenario(kWaiting);
    QVERIFY(driver.startRun(RunMode::Install));
    Q_EMIT driver.engine.progress(0.4);
    const ProgressParts shown = driver.progress();
    const QString caption = shown.caption->text();
    driver.wizard.setRunMode(RunMode::Install);
    const double fill = driver.mark->fill();
    Q_EMIT driver.engine.progress(0.9);
    Q_EMIT driver.engine.statusChanged(u"Late"_s);
    Q_EMIT driver.engine.finished(false, u"Too late"_s);
    QCOMPARE(shown.track->target(), 0.0);
    QVERIFY(!shown.barSweeps());
    QCOMPARE(driver.mark->fill(), fill);
    QCOMPARE(shown.caption->text(), caption);
    QVERIFY(driver.shows("WelcomePage"));
    QCOMPARE(driver.status(), u"Administrator rights required"_s);
    QCOMPARE(driver.buttons(), (QStringList { u"Cancel ghost"_s, u"Next primary"_s }));
}

void TestInstallerWizardRuns::simulation()
{
    QFETCH(RunMode, mode);
    WizardDriver driver { QString() };
    driver.sandbox.write(kPreferences, "colour = blue\n");
    driver.show(mode);
    QCOMPARE(driver.click(kDeletePreferences), mode == RunMode::Uninstall);
    QVERIFY(driver.pressOnToTheRun(mode));
    QTimer *timer = driver.simulationTimer();
    QVERIFY(timer);
    const ProgressParts shown = driver.progress();
    while (timer->isActive()) {
        QVERIFY(shown.caption->text() != kFinishing);
        const double fraction = shown.track->target();
        const double fill = mode == RunMode::Uninstall ? 1.0 - fraction : fraction;
        QVERIFY(std::abs(driver.mark->fill() - fill) < 1e-9);
        TimerWatch::fire(timer, 1);
        QVERIFY(shown.track->target() > fraction);
        if (!shown.file->text().isEmpty())
            QVERIFY(shown.file->text().startsWith(uR"(C:\Program Files\Varnel Schematics\)"));
    }
    QCOMPARE(shown.caption->text(), kFinishing);
    QCOMPARE(shown.percent->text(), u"100%"_s);
    QCOMPARE(shown.shownSteps(), shown.stepTexts().size());
    QVERIFY(driver.finishDelay()->isActive());
    QVERIFY(driver.comesTo(finishPage(mode)));

    QVERIFY(driver.sandbox.tempFiles().isEmpty());
    for (const QString &folder : { u"programs"_s, u"desktop"_s })
        QVERIFY(QDir(driver.sandbox.path(folder)).isEmpty());
    QVERIFY(driver.sandbox.registry().isEmpty());
    QCOMPARE(driver.sandbox.read(kPreferences), QByteArray("colour = blue\n"));
    // The farewell follows the choice all the same.
    QCOMPARE(labelOf(driver.currentPage(),
                     u"Varnel Schematics and your preferences have been removed.\n"
                     "Thanks for using it — we hope to see you again soon."_s)
                 != nullptr,
             mode == RunMode::Uninstall);
}

void TestInstallerWizardRuns::simulatesWithoutAnEngine_data()
{
    QTest::addColumn<RunMode>("mode");
    QTest::addColumn<QString>("missing");
    QTest::newRow("no engine") << RunMode::Uninstall << u"engine"_s;
    QTest::newRow("no setup program to update") << RunMode::Update << u"setup"_s;
    QTest::newRow("recorded uninstaller is gone") << RunMode::Uninstall << u"uninstaller"_s;
}

// The program for another mode does not help.
void TestInstallerWizardRuns::simulatesWithoutAnEngine()
{
    QFETCH(RunMode, mode);
    QFETCH(QString, missing);
    WizardDriver driver { missing == u"setup" ? QString() : Sandbox::setupEngine() };
    if (missing == u"engine")
        driver.wizard.setEngine(nullptr);
    if (missing != u"uninstaller")
        driver.wizard.setUninstallerPath(Sandbox::setupEngine());
    driver.sandbox.recordInstallation(u"1.6.8"_s, driver.sandbox.path(u"gone"_s),
                                      driver.sandbox.path(u"gone/unins000.exe"_s));
    QVERIFY(driver.startRun(mode));
    QVERIFY(driver.finishSimulation());
    QVERIFY(driver.comesTo(finishPage(mode)));
    QVERIFY(driver.sandbox.engineRuns().isEmpty());
}

void TestInstallerWizardRuns::simulationEndsWithItsPage()
{
    WizardDriver driver { QString() };
    QVERIFY(driver.startRun(RunMode::Install));
    const ProgressParts shown = driver.progress();
    const QPointer<QTimer> timer = driver.simulationTimer();
    TimerWatch::fire(timer, 20);
    QVERIFY(shown.track->target() > 0.3);
    driver.wizard.setRunMode(RunMode::Install);
    QVERIFY(!timer || !timer->isActive());
    QVERIFY(driver.shows("WelcomePage"));
    QCOMPARE(shown.track->value(), 0.0);
    QCOMPARE(shown.track->target(), 0.0);
    QCOMPARE(driver.mark->fill(), 1.0);
    QTRY_VERIFY_WITH_TIMEOUT(driver.mark->driftOffset() != 0.0, kPatience); // it floats

    QVERIFY(driver.startRun(RunMode::Install));
    QCOMPARE(shown.percent->text(), u"0%"_s);
    QVERIFY(shown.file->text().isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(shown.percent->text(), u"2%"_s, kPatience);
    // Also during the last look.
    QVERIFY(driver.finishSimulation());
    QVERIFY(driver.finishDelay()->isActive());
    driver.wizard.setRunMode(RunMode::Install);
    QVERIFY(!driver.finishDelay()->isActive());
}

QTEST_MAIN(TestInstallerWizardRuns)
#include "tst_installerwizard_runs.moc"
