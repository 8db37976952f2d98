#include "app/applicationfonts.h"
#include "pages/pagetext.h"
#include "pages/strictwarnings.h"
#include "theme/thememanager.h"
#include "widgets/animatedmark.h"
#include "widgets/progresstrack.h"
#include "wizard/installingpage.h"
#include "wizard/uninstallingpage.h"
#include "wizard/updatingpage.h"
#include "wizard/olddriver.h"

#include <QDir>
#include <QSignalSpy>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kFailed = u"Setup could not finish"_s;
const QString kPreferences = u"appdata/Varnel Schematics/Varnel Schematics/settings.ini"_s;

bool startInstall(WizardDriver &driver)
{
    driver.show(RunMode::Install);
    return driver.goToReadyPage() && driver.press(u"Install"_s);
}

/// The one look of a failed run.
bool showsFailure(const WizardDriver &driver, const QString &message)
{
    const QLabel *caption = driver.caption();
    const bool shown = driver.status() == kFailed
        && driver.buttons() == QStringList { u"Close danger"_s } && caption->text() == message
        && caption->textFormat() == Qt::PlainText && caption->wordWrap()
        && caption->styleSheet() == coloured(u"color:%1;"_s, { u"@INS_RED"_s })
        && !driver.track()->isIndeterminate();
    if (!shown)
        qInfo() << driver.status() << driver.buttons() << caption->text() << caption->styleSheet();
    return shown;
}

} // namespace

class TestInstallerWizardFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void endings_data();
    void endings();
    void messageIsLiteral();
    void emptyErrorGetsASentence();
    void missingSetupProgram();
    void missingUninstaller();
    void updateFails();
    void updateWithoutAFolder();
    void failedUninstallKeepsThePreferences();
    void failureIsFinal();
    void failureFollowsTheTheme();
    void closeIsTheOnlyWayOn();
    void logIsKept();
};

void TestInstallerWizardFaults::initTestCase()
{
    QApplication::setQuitOnLastWindowClosed(false);
    registerApplicationFonts();
}

void TestInstallerWizardFaults::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestInstallerWizardFaults::endings_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("cancelled half way") << QByteArray("exit-code = 5\nstage = half\n")
                                        << u"Installation was cancelled during setup."_s;
    QTest::newRow("at the end") << QByteArray("exit-code = 5\n")
                                << u"Installation was cancelled during setup."_s;
    QTest::newRow("before anything was written")
        << QByteArray("finish-at-once = yes\nexit-code = 5\n")
        << u"Installation was cancelled during setup."_s;
    QTest::newRow("unheard-of code") << QByteArray("exit-code = 99\n") << u"99"_s;
    QTest::newRow("crash") << QByteArray("crash = 9\n") << QString();
    QTest::newRow("crash before any figure")
        << QByteArray("crash = 9\nstage = start\n") << QString();
}

// Whatever the engine says of its end is what stands there, whole.
void TestInstallerWizardFaults::endings()
{
    QFETCH(QByteArray, scenario);
    QFETCH(QString, sentence);
    WizardDriver driver;
    driver.sandbox.setScenario(scenario);
    QSignalSpy finished(&driver.engine, &InstallerEngine::finished);
    QVERIFY(startInstall(driver));
    QTRY_COMPARE_WITH_TIMEOUT(driver.status(), kFailed, kPatience);
    QCOMPARE(finished.size(), 1);
    const QString error = finished.first().at(1).toString();
    QVERIFY(!error.isEmpty());
    QVERIFY2(error.contains(sentence), qPrintable(error));
    QVERIFY(driver.shows<InstallingPage>());
    QVERIFY(showsFailure(driver, error));
}

void TestInstallerWizardFaults::messageIsLiteral()
{
    WizardDriver driver;
    driver.sandbox.setScenario("exit-code = 4\nmessage-box = a&b <i>%2 %1</i>\n");
    QVERIFY(startInstall(driver));
    QTRY_COMPARE_WITH_TIMEOUT(driver.status(), kFailed, kPatience);
    QVERIFY2(driver.caption()->text().contains(kLiteral), qPrintable(driver.caption()->text()));
    QCOMPARE(driver.caption()->textFormat(), Qt::PlainText);
}

void TestInstallerWizardFaults::emptyErrorGetsASentence()
{
    WizardDriver driver;
    driver.sandbox.setScenario("stall = forever\n");
    QVERIFY(startInstall(driver));
    Q_EMIT driver.engine.finished(false, QString());
    QVERIFY(showsFailure(driver, u"Setup did not complete."_s));
}

void TestInstallerWizardFaults::missingSetupProgram()
{
    WizardDriver driver;
    driver.engine.setSetupExecutable(driver.sandbox.path(u"no/such/setup.exe"_s));
    QSignalSpy finished(&driver.engine, &InstallerEngine::finished);
    QVERIFY(startInstall(driver));
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, kPatience);
    QVERIFY(!finished.first().at(1).toString().isEmpty());
    QVERIFY(showsFailure(driver, finished.first().at(1).toString()));
}

// This one is reported while the run is still being started.
void TestInstallerWizardFaults::missingUninstaller()
{
    WizardDriver driver;
    driver.wizard.setUninstallerPath(driver.sandbox.path(u"no/such/unins000.exe"_s));
    driver.show(RunMode::Uninstall);
    QVERIFY(driver.press(u"Uninstall"_s));
    QVERIFY(driver.shows<UninstallingPage>());
    QVERIFY(showsFailure(driver, u"The uninstaller could not be found."_s));
}

void TestInstallerWizardFaults::updateFails()
{
    WizardDriver driver;
    driver.sandbox.recordInstallation(u"1.6.8"_s, driver.sandbox.path(u"installed"_s));
    driver.sandbox.setScenario("exit-code = 5\nfinish-at-once = yes\n");
    driver.show(RunMode::Update);
    QVERIFY(driver.pressAll({ u"Update Now"_s, u"Update"_s }));
    QTRY_COMPARE_WITH_TIMEOUT(driver.status(), kFailed, kPatience);
    QVERIFY(driver.shows<UpdatingPage>());
    QVERIFY(showsFailure(driver, u"Installation was cancelled during setup."_s));
}

// It is the engine that knows where its earlier copy is; any other folder would make a second one.
void TestInstallerWizardFaults::updateWithoutAFolder()
{
    WizardDriver driver;
    driver.sandbox.recordInstallation(u"1.6.8"_s, QString());
    driver.sandbox.setScenario("finish-at-once = yes\n");
    driver.show(RunMode::Update);
    QVERIFY(driver.pressAll({ u"Update Now"_s, u"Update"_s }));
    QTRY_COMPARE_WITH_TIMEOUT(driver.sandbox.engineRuns().size(), 1, kPatience);
    QCOMPARE(driver.sandbox.engineRuns().first().filter(u"/DIR="_s), QStringList { u"/DIR="_s });
}

void TestInstallerWizardFaults::failedUninstallKeepsThePreferences()
{
    WizardDriver driver;
    driver.sandbox.write(kPreferences, "colour = blue\n");
    const QString uninstaller = driver.sandbox.path(u"installed/unins000.exe"_s);
    QVERIFY(QDir().mkpath(driver.sandbox.path(u"installed"_s)));
    QVERIFY(QFile::copy(Sandbox::setupEngine(), uninstaller));
    driver.wizard.setUninstallerPath(uninstaller);
    driver.sandbox.setScenario("finish-at-once = yes\nexit-code = 1\n");
    driver.show(RunMode::Uninstall);
    QVERIFY(driver.click(u"Also delete my preferences and cached data"_s));
    QVERIFY(driver.press(u"Uninstall"_s));
    QCOMPARE(driver.steps().size(), 5);
    QTRY_COMPARE_WITH_TIMEOUT(driver.status(), kFailed, kPatience);
    QVERIFY(driver.shows<UninstallingPage>());
    QCOMPARE(driver.sandbox.read(kPreferences), QByteArray("colour = blue\n"));
}

// Neither a late word of the engine nor a pending timer leads away from it.
void TestInstallerWizardFaults::failureIsFinal()
{
    constexpr int kFinishDelay = 500; // ms
    WizardDriver driver;
    driver.sandbox.setScenario("stall = forever\n");
    QVERIFY(startInstall(driver));
    Q_EMIT driver.engine.progress(0.3);
    driver.watch.clear();
    Q_EMIT driver.engine.finished(false, u"No"_s);
    QVERIFY(showsFailure(driver, u"No"_s));
    Q_EMIT driver.engine.progress(0.9);
    Q_EMIT driver.engine.currentFile(u"late.dll"_s);
    Q_EMIT driver.engine.statusChanged(u"Late"_s);
    Q_EMIT driver.engine.finished(true, QString());
    QTimer later;
    later.setSingleShot(true);
    later.start(kFinishDelay + 200);
    QTRY_VERIFY_WITH_TIMEOUT(!later.isActive(), kPatience);
    QCOMPARE(driver.watch.shots().count(kFinishDelay), 1); // as long as keys are held back
    QVERIFY(driver.shows<InstallingPage>());
    QVERIFY(showsFailure(driver, u"No"_s));
    QCOMPARE(driver.percent(), u"30%"_s);
    QVERIFY(driver.file().isEmpty());
    QCOMPARE(driver.mark->fill(), 0.3);
}

void TestInstallerWizardFaults::failureFollowsTheTheme()
{
    WizardDriver driver;
    driver.sandbox.setScenario("stall = forever\n");
    QVERIFY(startInstall(driver));
    Q_EMIT driver.engine.finished(false, u"No"_s);
    ThemeManager::instance().setDarkMode(true);
    QVERIFY(showsFailure(driver, u"No"_s));
}

void TestInstallerWizardFaults::closeIsTheOnlyWayOn()
{
    WizardDriver driver;
    driver.sandbox.setScenario("exit-code = 5\n");
    QVERIFY(startInstall(driver));
    QTRY_COMPARE_WITH_TIMEOUT(driver.status(), kFailed, kPatience);
    QCOMPARE(WizardDriver::runUntilQuit([&] { QVERIFY(driver.press(u"Close"_s)); }), 0);
    QVERIFY(!driver.wizard.isVisible());
    QCOMPARE(driver.sandbox.engineRuns().size(), 1);
    QVERIFY(driver.sandbox.read(u"launches.txt"_s).isEmpty());
}

void TestInstallerWizardFaults::logIsKept()
{
    WizardDriver driver;
    driver.sandbox.setScenario("exit-code = 4\nmessage-box = There is no room.\n");
    QVERIFY(startInstall(driver));
    QTRY_COMPARE_WITH_TIMEOUT(driver.status(), kFailed, kPatience);
    const QString log =
        QDir::toNativeSeparators(driver.sandbox.tempFolder() + u"/varnel_setup_last.log");
    QVERIFY2(driver.caption()->text().endsWith(u"  There is no room.  (log: "_s + log + u')'),
             qPrintable(driver.caption()->text()));
    driver.engine.stop();
    QCOMPARE(driver.sandbox.tempFiles(), QStringList { u"varnel_setup_last.log"_s });
}

QTEST_MAIN(TestInstallerWizardFaults)
#include "tst_installerwizard_faults.moc"
