#include "app/applicationfonts.h"
#include "pages/confirmuninstallpage.h"
#include "pages/destinationpage.h"
#include "pages/finishedpage.h"
#include "pages/folderchooser.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "pages/uninstallcompletepage.h"
#include "pages/updatefinishedpage.h"
#include "pages/welcomepage.h"
#include "system/installation.h"
#include "theme/thememanager.h"
#include "widgets/animatedmark.h"
#include "widgets/progresstrack.h"
#include "wizard/installingpage.h"
#include "wizard/uninstallingpage.h"
#include "wizard/updatingpage.h"
#include "wizard/olddriver.h"

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kFinishDelay = 500; // ms
const QString kPreferences = u"appdata/Varnel Schematics/Varnel Schematics/settings.ini"_s;
const QString kDeletePreferences = u"Also delete my preferences and cached data"_s;
const QString kFinishing = u"Finishing up…"_s;

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

class TestInstallerWizardRuns : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerApplicationFonts(); }
    void init();
    void chosenFolderGoesAllTheWay();
    void install_data();
    void install();
    void startOfARun();
    void figuresOfARun_data();
    void figuresOfARun();
    void halfWay();
    void barSweepsUntilTheFirstFigure();
    void lastLook();
    void update();
    void uninstall_data();
    void uninstall();
    void preferencesGoOnlyAfterTheEnd();
    void givenUninstallerGoesFirst();
    void uninstallerIsFoundInTheRegistry();
    void abandonedRunIsSilent();
    void secondRunReplacesTheFirst();
};

void TestInstallerWizardRuns::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestInstallerWizardRuns::install_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("shortcut");
    QTest::newRow("with a shortcut") << u"target/Varnel Schematics"_s << true;
    QTest::newRow("without a shortcut") << u"target/Varnel Schematics"_s << false;
    QTest::newRow("markup in the folder's name")
        << QString(u"target/"_s + Sandbox::oddName()) << true;
    QTest::newRow("other letters") << u"Schaltpläne/電路"_s << false;
}

void TestInstallerWizardRuns::install()
{
    QFETCH(QString, folder);
    QFETCH(bool, shortcut);
    WizardDriver driver;
    const QString path = QDir::toNativeSeparators(driver.sandbox.path(folder));
    driver.show(RunMode::Install);
    QVERIFY(driver.goToReadyPage(path));
    if (!shortcut) {
        QVERIFY(driver.press(u"Back"_s));
        QVERIFY(driver.click(u"Create a desktop shortcut"_s));
        QVERIFY(driver.press(u"Next"_s));
    }
    QVERIFY(driver.press(u"Install"_s));
    QTRY_VERIFY_WITH_TIMEOUT(driver.shows<FinishedPage>(), kPatience);

    const QList<QStringList> runs = driver.sandbox.engineRuns();
    QCOMPARE(runs.size(), 1);
    QCOMPARE(runs.first().first(), QDir::toNativeSeparators(Sandbox::setupEngine()));
    QCOMPARE(
        runs.first().sliced(1, 5),
        (QStringList { u"/VERYSILENT"_s, u"/SUPPRESSMSGBOXES"_s, u"/NORESTART"_s, u"/DIR="_s + path,
                       shortcut ? u"/TASKS=desktopicon"_s : u"/TASKS="_s }));
    QVERIFY(QFileInfo::exists(path + u"/VarnelSolutions.exe"));
    QCOMPARE(QDir(driver.sandbox.path(u"desktop"_s)).isEmpty(), !shortcut);
    QCOMPARE(driver.status(), u"Finished in 51 seconds"_s);
    const QString note = shortcut ? u"\nA shortcut is on your desktop."_s : QString();
    QVERIFY(labelOf(driver.currentPage(), u"Installed to "_s + path + u'.' + note));
}

void TestInstallerWizardRuns::startOfARun()
{
    WizardDriver driver;
    driver.sandbox.setScenario("stall = forever\nstage = before-status\n");
    driver.show(RunMode::Install);
    QVERIFY(driver.goToReadyPage());
    QVERIFY(driver.press(u"Install"_s));
    QVERIFY(driver.shows<InstallingPage>());
    QCOMPARE(driver.status(), u"Do not turn off your PC"_s);
    QCOMPARE(driver.buttons(), QStringList { u"Cancel ghost disabled"_s });
    QCOMPARE(driver.steps(),
             (QStringList { u"Extracting application files"_s, u"Installing WebView2 Runtime"_s,
                            u"Registering .sch and .pcb file types"_s, u"Creating shortcuts"_s }));
    QCOMPARE(driver.shownSteps(), 0);
    QCOMPARE(driver.percent(), u"0%"_s);
    QCOMPARE(driver.caption()->text(), u"This may take a few minutes."_s);
    QVERIFY(driver.file().isEmpty());
    QCOMPARE(driver.mark->fill(), 0.0);
    QVERIFY(!driver.mark->isIdle());
    QTRY_COMPARE_WITH_TIMEOUT(driver.sandbox.engineRuns().size(), 1, kPatience);
    QTest::mouseClick(driver.button(u"Cancel"_s), Qt::LeftButton);
    QVERIFY(driver.shows<InstallingPage>());
    QVERIFY(driver.wizard.isVisible());
}

void TestInstallerWizardRuns::chosenFolderGoesAllTheWay()
{
    WizardDriver driver;
    const QString folder = QDir::toNativeSeparators(driver.sandbox.path(u"my tools"_s));
    QVERIFY(QDir().mkpath(folder));
    driver.show(RunMode::Install);
    QVERIFY(driver.goToReadyPage());
    QVERIFY(driver.pressAll({ u"Back"_s, u"Back"_s }));
    chooseFolder(driver.find<DestinationPage>()->findChild<QPushButton *>(), folder);
    QCOMPARE(driver.find<DestinationPage>()->path(), folder);
    QVERIFY(driver.pressAll({ u"Next"_s, u"Next"_s }));
    QVERIFY(shownText(driver.currentPage()->findChildren<QLabel *>().last()).contains(folder));
    QVERIFY(driver.press(u"Install"_s));
    QTRY_VERIFY_WITH_TIMEOUT(driver.shows<FinishedPage>(), kPatience);
    QVERIFY(driver.sandbox.engineRuns().first().contains(u"/DIR="_s + folder));
    QVERIFY(QFileInfo::exists(folder + u"/VarnelSolutions.exe"));
}

void TestInstallerWizardRuns::figuresOfARun_data()
{
    QTest::addColumn<RunMode>("mode");
    QTest::addColumn<double>("fraction");
    QTest::addColumn<QString>("percent");
    QTest::addColumn<double>("fill");
    QTest::addColumn<int>("steps");
    QTest::newRow("install, 30") << RunMode::Install << 0.3 << u"30%"_s << 0.3 << 2;
    QTest::newRow("install, rounded") << RunMode::Install << 0.994 << u"99%"_s << 0.994 << 4;
    QTest::newRow("install, rounded up") << RunMode::Install << 0.995 << u"100%"_s << 0.995 << 4;
    QTest::newRow("update, 50") << RunMode::Update << 0.5 << u"50%"_s << 0.5 << 3;
    QTest::newRow("uninstall, 30") << RunMode::Uninstall << 0.3 << u"30%"_s << 0.7 << 2;
    QTest::newRow("uninstall, the end") << RunMode::Uninstall << 1.0 << u"100%"_s << 0.0 << 4;
}

void TestInstallerWizardRuns::figuresOfARun()
{
    QFETCH(RunMode, mode);
    QFETCH(double, fraction);
    QFETCH(double, fill);
    WizardDriver driver;
    if (mode != RunMode::Install)
        installCopy(driver);
    driver.sandbox.setScenario("stall = forever\nstage = before-status\n");
    driver.show(mode);
    if (mode == RunMode::Install)
        QVERIFY(driver.goToReadyPage() && driver.press(u"Install"_s));
    else if (mode == RunMode::Update)
        QVERIFY(driver.pressAll({ u"Update Now"_s, u"Update"_s }));
    else
        QVERIFY(driver.press(u"Uninstall"_s));
    QCOMPARE(driver.mark->fill(), mode == RunMode::Uninstall ? 1.0 : 0.0);

    Q_EMIT driver.engine.progress(fraction);
    QTEST(driver.percent(), "percent");
    QCOMPARE(driver.track()->target(), fraction);
    QVERIFY(std::abs(driver.mark->fill() - fill) < 1e-9);
    QTEST(driver.shownSteps(), "steps");
    Q_EMIT driver.engine.currentFile(kLiteral);
    QCOMPARE(driver.file(), kLiteral);
    Q_EMIT driver.engine.statusChanged(u"Working…"_s);
    QCOMPARE(driver.caption()->text(), u"Working…"_s);
    Q_EMIT driver.engine.progress(1.0);
    QCOMPARE(driver.caption()->text(), u"Working…"_s);
    QCOMPARE(driver.buttons(), QStringList { u"Cancel ghost disabled"_s });
}

// What a real child process has written into its files by then.
void TestInstallerWizardRuns::halfWay()
{
    WizardDriver driver;
    const QString folder = driver.sandbox.nativePath(u"programs/Varnel Schematics"_s);
    driver.sandbox.setScenario("stall = forever\nstage = half\n");
    driver.show(RunMode::Install);
    QVERIFY(driver.goToReadyPage());
    QVERIFY(driver.press(u"Install"_s));
    QTRY_VERIFY_WITH_TIMEOUT(driver.track()->target() > 0.3, kPatience);
    QVERIFY(driver.track()->target() < 0.7);
    QCOMPARE(driver.percent(), u"%1%"_s.arg(qRound(100 * driver.track()->target())));
    QCOMPARE(driver.mark->fill(), driver.track()->target());
    QTRY_VERIFY_WITH_TIMEOUT(driver.file().startsWith(folder), kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(driver.caption()->text(), u"Extracting application files…"_s,
                              kPatience);
    QVERIFY(!driver.track()->isIndeterminate());
    QVERIFY(driver.shownSteps() >= 2);
}

void TestInstallerWizardRuns::barSweepsUntilTheFirstFigure()
{
    WizardDriver driver;
    driver.sandbox.setScenario("stall = forever\nstage = before-status\n");
    driver.show(RunMode::Install);
    QVERIFY(driver.goToReadyPage());
    QVERIFY(driver.press(u"Install"_s));
    QVERIFY(driver.track()->isIndeterminate());
    Q_EMIT driver.engine.currentFile(u"a.dll"_s);
    Q_EMIT driver.engine.statusChanged(u"Starting…"_s);
    QVERIFY(driver.track()->isIndeterminate());
    Q_EMIT driver.engine.progress(0.01);
    QVERIFY(!driver.track()->isIndeterminate());
    QCOMPARE(driver.percent(), u"1%"_s);
}

void TestInstallerWizardRuns::lastLook()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    QVERIFY(driver.goToReadyPage());
    QVERIFY(driver.press(u"Install"_s));
    driver.watch.clear();
    bool looked = false;
    connect(&driver.engine, &InstallerEngine::finished, this, [&](bool ok) {
        QVERIFY(ok);
        looked = true;
        QVERIFY(driver.shows<InstallingPage>());
        QCOMPARE(driver.caption()->text(), kFinishing);
        QCOMPARE(driver.percent(), u"100%"_s);
        QCOMPARE(driver.shownSteps(), 4);
        QCOMPARE(driver.mark->fill(), 1.0);
        QVERIFY(!driver.watch.shots().contains(kFinishDelay));
    });
    QTRY_VERIFY_WITH_TIMEOUT(driver.shows<FinishedPage>(), kPatience);
    QVERIFY(looked);
    QCOMPARE(driver.watch.shots().count(kFinishDelay), 1);
}

void TestInstallerWizardRuns::update()
{
    WizardDriver driver;
    const QString folder = installCopy(driver);
    driver.sandbox.write(kPreferences, "colour = blue\n");
    driver.show(RunMode::Update);
    QVERIFY(driver.pressAll({ u"Update Now"_s, u"Update"_s }));
    QVERIFY(driver.shows<UpdatingPage>());
    QCOMPARE(driver.steps(),
             (QStringList { u"Backing up your settings"_s, u"Replacing application files"_s,
                            u"Migrating configuration"_s, u"Restarting services"_s }));
    QTRY_VERIFY_WITH_TIMEOUT(driver.shows<UpdateFinishedPage>(), kPatience);
    QCOMPARE(driver.status(), u"Updated in 38 seconds"_s);
    const QStringList arguments = driver.sandbox.engineRuns().last();
    QVERIFY(arguments.contains(u"/DIR="_s + folder));
    // The shortcut is a matter of the installation, and it is wanted there unless said otherwise.
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

void TestInstallerWizardRuns::uninstall()
{
    QFETCH(bool, deletePreferences);
    WizardDriver driver;
    const QString folder = installCopy(driver);
    driver.sandbox.write(kPreferences, "colour = blue\n");
    const QString other = u"appdata/Varnel Schematics/Other/settings.ini"_s;
    driver.sandbox.write(other, "mine");
    driver.show(RunMode::Uninstall);
    if (deletePreferences)
        QVERIFY(driver.click(kDeletePreferences));
    QVERIFY(driver.press(u"Uninstall"_s));
    QVERIFY(driver.shows<UninstallingPage>());
    QStringList steps { u"Stopping Varnel Schematics"_s, u"Removing application files"_s,
                        u"Removing shortcuts"_s, u"Unregistering file types"_s };
    if (deletePreferences)
        steps.append(u"Removing user data"_s);
    QCOMPARE(driver.steps(), steps);
    QTRY_VERIFY_WITH_TIMEOUT(driver.shows<UninstallCompletePage>(), kPatience);

    QVERIFY(!QFileInfo::exists(folder));
    driver.sandbox.adoptRegistry();
    QVERIFY(installedVersion().isEmpty());
    const QByteArray kept = deletePreferences ? QByteArray() : QByteArray("colour = blue\n");
    QCOMPARE(driver.sandbox.read(kPreferences), kept);
    QCOMPARE(QFileInfo::exists(QFileInfo(driver.sandbox.path(kPreferences)).path()),
             !deletePreferences);
    QCOMPARE(driver.sandbox.read(other), QByteArray("mine"));
    QCOMPARE(driver.status(), u"Uninstalled in 24 seconds"_s);
    QCOMPARE(driver.buttons(), QStringList { u"Close ghost"_s });
    QVERIFY(labelOf(driver.currentPage(),
                    deletePreferences
                        ? u"Varnel Schematics and your preferences have been removed.\n"
                          "Thanks for using it — we hope to see you again soon."_s
                        : u"Varnel Schematics has been removed from your computer.\n"
                          "Your preferences were kept in case you're back soon."_s));
}

void TestInstallerWizardRuns::preferencesGoOnlyAfterTheEnd()
{
    WizardDriver driver;
    installCopy(driver);
    driver.sandbox.write(kPreferences, "colour = blue\n");
    driver.sandbox.setScenario("stall = 3\nstage = end\n");
    driver.show(RunMode::Uninstall);
    QVERIFY(driver.click(kDeletePreferences));
    QVERIFY(driver.press(u"Uninstall"_s));
    QTRY_COMPARE_WITH_TIMEOUT(driver.percent(), u"100%"_s, kPatience);
    QVERIFY(!driver.sandbox.read(kPreferences).isEmpty());
    bool ended = false;
    connect(&driver.engine, &InstallerEngine::finished, this, [&] {
        ended = true;
        QCOMPARE(driver.caption()->text(), kFinishing);
        QVERIFY(driver.sandbox.read(kPreferences).isEmpty());
    });
    QTRY_VERIFY_WITH_TIMEOUT(ended, kPatience);
}

void TestInstallerWizardRuns::givenUninstallerGoesFirst()
{
    WizardDriver driver;
    const QString folder = installCopy(driver);
    const QString given = driver.sandbox.nativePath(u"given/unins000.exe"_s);
    QVERIFY(QDir().mkpath(QFileInfo(given).path()));
    QVERIFY(QFile::copy(Sandbox::setupEngine(), given));
    driver.wizard.setUninstallerPath(given);
    driver.show(RunMode::Uninstall);
    QVERIFY(driver.press(u"Uninstall"_s));
    QTRY_VERIFY_WITH_TIMEOUT(driver.sandbox.engineRuns().size() == 2, kPatience);
    QCOMPARE(driver.sandbox.engineRuns().last().first(), given);
    QVERIFY(QFileInfo::exists(folder));
}

void TestInstallerWizardRuns::uninstallerIsFoundInTheRegistry()
{
    WizardDriver driver;
    const QString folder = installCopy(driver);
    driver.show(RunMode::Uninstall);
    QVERIFY(driver.press(u"Uninstall"_s));
    QTRY_VERIFY_WITH_TIMEOUT(driver.sandbox.engineRuns().size() == 2, kPatience);
    QCOMPARE(driver.sandbox.engineRuns().last().first(),
             folder + QDir::separator() + u"unins000.exe");
    QTRY_VERIFY_WITH_TIMEOUT(driver.shows<UninstallCompletePage>(), kPatience);
}

void TestInstallerWizardRuns::abandonedRunIsSilent()
{
    WizardDriver driver;
    driver.sandbox.setScenario("stall = forever\nstage = before-status\n");
    driver.show(RunMode::Install);
    QVERIFY(driver.goToReadyPage());
    QVERIFY(driver.press(u"Install"_s));
    Q_EMIT driver.engine.progress(0.4);
    const ProgressTrack *track = driver.track();
    const QString caption = driver.caption()->text();
    const QLabel *captionLabel = driver.caption();

    driver.wizard.setRunMode(RunMode::Install);
    QVERIFY(driver.shows<WelcomePage>());
    QCOMPARE(track->target(), 0.0);
    QVERIFY(!track->isIndeterminate());
    const double fill = driver.mark->fill();
    Q_EMIT driver.engine.progress(0.9);
    Q_EMIT driver.engine.statusChanged(u"Late"_s);
    Q_EMIT driver.engine.finished(false, u"Too late"_s);
    QCOMPARE(track->target(), 0.0);
    QCOMPARE(driver.mark->fill(), fill);
    QCOMPARE(captionLabel->text(), caption);
    QVERIFY(driver.shows<WelcomePage>());
    QCOMPARE(driver.status(), u"Administrator rights required"_s);
    QCOMPARE(driver.buttons(), (QStringList { u"Cancel ghost"_s, u"Next primary"_s }));
}

void TestInstallerWizardRuns::secondRunReplacesTheFirst()
{
    WizardDriver driver;
    driver.sandbox.setScenario("stall = forever\nstage = before-status\n");
    driver.show(RunMode::Install);
    QVERIFY(driver.goToReadyPage());
    QVERIFY(driver.press(u"Install"_s));
    QTRY_COMPARE_WITH_TIMEOUT(driver.sandbox.engineRuns().size(), 1, kPatience);
    driver.wizard.setRunMode(RunMode::Install);
    driver.sandbox.setScenario({});
    QVERIFY(
        driver.pressAll({ u"Next"_s, u"Next"_s, u"Next"_s, u"Next"_s, u"Next"_s, u"Install"_s }));
    QSignalSpy finished(&driver.engine, &InstallerEngine::finished);
    QTRY_VERIFY_WITH_TIMEOUT(driver.shows<FinishedPage>(), kPatience);
    QCOMPARE(finished.size(), 1);
    QCOMPARE(driver.sandbox.engineRuns().size(), 2);
    // Nothing but the files of the run that has just ended is left.
    QCOMPARE(driver.sandbox.tempFiles().size(), 2);
    driver.engine.stop();
    QVERIFY(driver.sandbox.tempFiles().isEmpty());
}

QTEST_MAIN(TestInstallerWizardRuns)
#include "tst_installerwizard_runs.moc"
