#include "app/applicationfonts.h"
#include "pages/destinationpage.h"
#include "pages/finishedpage.h"
#include "pages/strictwarnings.h"
#include "pages/uninstallcompletepage.h"
#include "pages/updatefinishedpage.h"
#include "pages/welcomepage.h"
#include "theme/thememanager.h"
#include "wizard/installertitlebar.h"
#include "wizard/installingpage.h"
#include "wizard/olddriver.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QSignalSpy>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Long enough for whatever was still to come, in milliseconds.
constexpr int kAWhile = 400;

QPushButton *closeButton(const WizardDriver &driver)
{
    return driver.titleBar->findChild<QPushButton *>(u"insCloseBtn"_s);
}

QByteArrayList launches(const WizardDriver &driver)
{
    QByteArrayList lines = driver.sandbox.read(u"launches.txt"_s).split('\n');
    lines.removeAll(QByteArray());
    return lines;
}

/// Nothing ends the event loop any more.
bool staysQuiet()
{
    return WizardDriver::runUntilQuit([] {}, kAWhile) == -1;
}

bool install(WizardDriver &driver)
{
    driver.show(RunMode::Install);
    return driver.goToReadyPage() && driver.press(u"Install"_s)
        && QTest::qWaitFor([&] { return driver.shows<FinishedPage>(); }, kPatience);
}

} // namespace

class TestInstallerWizardClosing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void titleBarCloses();
    void leftButtonCloses_data();
    void leftButtonCloses();
    void windowIsClosedFromOutside();
    void closingDuringARun_data();
    void closingDuringARun();
    void closingDuringASimulation();
    void clickIsOverBeforeTheEnd();
    void closesOnce();
    void onlyTheFirstCallActs();
    void openStartsTheApplicationOnce();
    void openAfterAnUpdate();
    void closeStartsNothing();
    void openWithoutApplication();
};

void TestInstallerWizardClosing::initTestCase()
{
    QApplication::setQuitOnLastWindowClosed(false);
    registerApplicationFonts();
}

void TestInstallerWizardClosing::init()
{
    failOnWarnings();
    ThemeManager::instance().setDarkMode(false);
}

void TestInstallerWizardClosing::titleBarCloses()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    const int code = WizardDriver::runUntilQuit([&] {
        QTest::mouseClick(closeButton(driver), Qt::LeftButton);
        QVERIFY(!driver.wizard.isVisible()); // at once, whatever is still to be done
    });
    QCOMPARE(code, 0);
    QVERIFY(driver.sandbox.engineRuns().isEmpty());
}

void TestInstallerWizardClosing::leftButtonCloses_data()
{
    QTest::addColumn<RunMode>("mode");
    QTest::addColumn<QString>("text");
    QTest::newRow("install") << RunMode::Install << u"Cancel"_s;
    QTest::newRow("update") << RunMode::Update << u"Skip"_s;
    QTest::newRow("uninstall") << RunMode::Uninstall << u"Cancel"_s;
}

void TestInstallerWizardClosing::leftButtonCloses()
{
    QFETCH(RunMode, mode);
    QFETCH(QString, text);
    WizardDriver driver;
    driver.show(mode);
    QCOMPARE(WizardDriver::runUntilQuit([&] { QVERIFY(driver.press(text)); }), 0);
    QVERIFY(!driver.wizard.isVisible());
    QVERIFY(driver.sandbox.engineRuns().isEmpty());
}

void TestInstallerWizardClosing::windowIsClosedFromOutside()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    QCOMPARE(WizardDriver::runUntilQuit([&] { QVERIFY(driver.wizard.close()); }), 0);
    QVERIFY(!driver.wizard.isVisible());
    QVERIFY(staysQuiet());
}

void TestInstallerWizardClosing::closingDuringARun_data()
{
    QTest::addColumn<bool>("fromOutside");
    QTest::newRow("by the title bar") << false;
    QTest::newRow("from outside") << true;
}

// Without a question, and nothing of the run is left when the engine goes.
void TestInstallerWizardClosing::closingDuringARun()
{
    QFETCH(bool, fromOutside);
    WizardDriver driver;
    driver.sandbox.setScenario("stall = forever\nstage = half\nignore-termination = yes\n");
    driver.show(RunMode::Install);
    QVERIFY(driver.goToReadyPage());
    QVERIFY(driver.press(u"Install"_s));
    QTRY_VERIFY_WITH_TIMEOUT(driver.percent() != u"0%"_s, kPatience);
    QElapsedTimer clock;
    clock.start();
    const int code = WizardDriver::runUntilQuit([&] {
        if (fromOutside)
            QVERIFY(driver.wizard.close());
        else
            QTest::mouseClick(closeButton(driver), Qt::LeftButton);
    });
    QCOMPARE(code, 0);
    QVERIFY(!driver.wizard.isVisible());
    QVERIFY(clock.elapsed() < 5000);
    driver.engine.stop();
    QVERIFY(driver.sandbox.tempFiles().isEmpty());
}

void TestInstallerWizardClosing::closingDuringASimulation()
{
    WizardDriver driver { QString() };
    driver.show(RunMode::Install);
    QVERIFY(driver.goToReadyPage());
    QVERIFY(driver.press(u"Install"_s));
    QCOMPARE(
        WizardDriver::runUntilQuit([&] { QTest::mouseClick(closeButton(driver), Qt::LeftButton); }),
        0);
    QVERIFY(!driver.wizard.isVisible());
}

void TestInstallerWizardClosing::clickIsOverBeforeTheEnd()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    const int code = WizardDriver::runUntilQuit([&] {
        closeButton(driver)->click();
        // Once the end has been asked for, no event loop starts any more.
        QCOMPARE(QEventLoop().exec(), 0);
    });
    QCOMPARE(code, 0);
}

void TestInstallerWizardClosing::closesOnce()
{
    WizardDriver driver;
    driver.show(RunMode::Install);
    const int code = WizardDriver::runUntilQuit([&] {
        closeButton(driver)->click();
        closeButton(driver)->click();
        driver.button(u"Cancel"_s)->click();
        driver.wizard.close();
    });
    QCOMPARE(code, 0);
    QVERIFY(staysQuiet());
    closeButton(driver)->click();
    QVERIFY(staysQuiet());
}

void TestInstallerWizardClosing::onlyTheFirstCallActs()
{
    WizardDriver driver;
    QVERIFY(install(driver));
    const int code = WizardDriver::runUntilQuit([&] {
        driver.button(u"Close"_s)->click();
        driver.button(u"Open Varnel Schematics"_s)->click();
    });
    QCOMPARE(code, 0);
    QVERIFY(staysQuiet());
    QVERIFY(launches(driver).isEmpty());
}

void TestInstallerWizardClosing::openStartsTheApplicationOnce()
{
    WizardDriver driver;
    const QString folder = driver.sandbox.nativePath(u"programs/Varnel Schematics"_s);
    QVERIFY(install(driver));
    const int code = WizardDriver::runUntilQuit([&] {
        driver.button(u"Open Varnel Schematics"_s)->click();
        driver.button(u"Open Varnel Schematics"_s)->click();
        closeButton(driver)->click();
        QVERIFY(!driver.wizard.isVisible());
    });
    QCOMPARE(code, 0);
    QTRY_COMPARE_WITH_TIMEOUT(launches(driver).size(), 1, kPatience);
    QVERIFY(staysQuiet());
    const QString where = QDir::toNativeSeparators(QFileInfo(folder).canonicalFilePath());
    const QString expected = folder + QDir::separator() + u"VarnelSolutions.exe\t" + where;
    QCOMPARE(launches(driver), QByteArrayList { expected.toUtf8() });
}

// The copy that was updated, wherever it lies.
void TestInstallerWizardClosing::openAfterAnUpdate()
{
    WizardDriver driver;
    const QString folder = driver.sandbox.nativePath(u"elsewhere/"_s + Sandbox::oddName());
    QVERIFY(QDir().mkpath(folder));
    driver.sandbox.recordInstallation(u"1.6.8"_s, folder + u'/');
    driver.show(RunMode::Update);
    QVERIFY(driver.pressAll({ u"Update Now"_s, u"Update"_s }));
    QTRY_VERIFY_WITH_TIMEOUT(driver.shows<UpdateFinishedPage>(), kPatience);
    QCOMPARE(
        WizardDriver::runUntilQuit([&] { QVERIFY(driver.press(u"Open Varnel Schematics"_s)); }), 0);
    QTRY_COMPARE_WITH_TIMEOUT(launches(driver).size(), 1, kPatience);
    const QString program = folder + QDir::separator() + u"VarnelSolutions.exe\t";
    QVERIFY(launches(driver).first().startsWith(program.toUtf8()));
}

void TestInstallerWizardClosing::closeStartsNothing()
{
    WizardDriver driver;
    QVERIFY(install(driver));
    QCOMPARE(WizardDriver::runUntilQuit([&] { QVERIFY(driver.press(u"Close"_s)); }), 0);
    QVERIFY(staysQuiet());
    QVERIFY(launches(driver).isEmpty());
}

void TestInstallerWizardClosing::openWithoutApplication()
{
    WizardDriver driver { QString() };
    driver.show(RunMode::Update);
    QVERIFY(driver.pressAll({ u"Update Now"_s, u"Update"_s }));
    QVERIFY(driver.finishSimulation());
    QTRY_VERIFY_WITH_TIMEOUT(driver.shows<UpdateFinishedPage>(), kPatience);
    QCOMPARE(
        WizardDriver::runUntilQuit([&] { QVERIFY(driver.press(u"Open Varnel Schematics"_s)); }), 0);
    QVERIFY(!driver.wizard.isVisible());
    QVERIFY(staysQuiet());
}

QTEST_MAIN(TestInstallerWizardClosing)
#include "tst_installerwizard_closing.moc"
