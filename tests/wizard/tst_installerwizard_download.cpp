// The wizard of a download, which carries its engine.

#include "bundle/bundlefile.h"
#include "bundle/carriedengine.h"
#include "wizard/wizardtest.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// A window with a carried engine of 3 MB that has not been started.
struct Download
{
    WizardDriver driver { QString() };
    BundleFile file { driver.sandbox, 3 * 1024 * 1024 };
    CarriedEngine engine { file.path, file.bundle };

    Download() { driver.wizard.setCarriedEngine(&engine); }

    [[nodiscard]] bool isUnpacking() const { return !driver.sandbox.tempFiles().isEmpty(); }
};

} // namespace

class TestInstallerWizardDownload : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void unpackingBeginsAfterTheFirstPage();
    void removalUnpacksNothingAndIsNotSimulated();
    void runWaitsForTheEngine();
};

void TestInstallerWizardDownload::unpackingBeginsAfterTheFirstPage()
{
    Download download;
    download.driver.show(RunMode::Install);
    QVERIFY(!download.isUnpacking());
    QTRY_VERIFY(download.isUnpacking());
    QVERIFY(download.driver.shows("WelcomePage"));
}

void TestInstallerWizardDownload::removalUnpacksNothingAndIsNotSimulated()
{
    Download download;
    download.driver.show(RunMode::Uninstall);
    QTest::qWait(2000);
    QVERIFY(download.driver.press(u"Uninstall"_s));
    QCOMPARE(download.driver.progress().caption->text(), u"The uninstaller could not be found."_s);
    QVERIFY(!download.isUnpacking());
}

// The carried engine is only noise, so starting it fails and ends the run.
void TestInstallerWizardDownload::runWaitsForTheEngine()
{
    Download download;
    QVERIFY(download.driver.startRun(RunMode::Update));
    QVERIFY(!download.engine.isFinished());
    QVERIFY(download.driver.shows("UpdatingPage"));
    QTRY_COMPARE_WITH_TIMEOUT(download.driver.status(), u"Setup could not finish"_s, kPatience);
    QVERIFY(download.engine.isFinished());
    QCOMPARE(download.driver.engine.setupExecutable(), download.engine.path());
}

QTEST_MAIN(TestInstallerWizardDownload)
#include "tst_installerwizard_download.moc"
