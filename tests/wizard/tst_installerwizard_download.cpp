// The wizard of a download, which carries its engine.

#include "bundle/bundlefile.h"
#include "bundle/carriedengine.h"
#include "pages/pagetext.h"
#include "wizard/wizardtest.h"

#include <QDir>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kDamaged = u"This setup file is damaged. Please download it again."_s;

/// A window with a carried engine of 3 MB that has not been started.
struct Download
{
    WizardDriver driver { QString() };
    BundleFile file { driver.sandbox, 3 * 1024 * 1024 };
    CarriedEngine engine { file.path, file.bundle };

    Download() { driver.wizard.setCarriedEngine(&engine); }

    [[nodiscard]] bool isUnpacking() const
    {
        return !driver.sandbox.tempFiles().isEmpty()
            || !QDir(driver.sandbox.tempFolder()).isEmpty();
    }
};

} // namespace

class TestInstallerWizardDownload : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void unpackingBeginsAfterTheFirstPage();
    void removalUnpacksNothing();
    void removalIsNotSimulated();
    void runWaitsForTheEngine();
    void damageEndsTheRun();
    void damagedFileHasOnePage();
};

void TestInstallerWizardDownload::unpackingBeginsAfterTheFirstPage()
{
    Download download;
    download.driver.show(RunMode::Install);
    QVERIFY(!download.isUnpacking());
    QTRY_VERIFY(download.isUnpacking());
    QVERIFY(download.driver.shows("WelcomePage"));
}

void TestInstallerWizardDownload::removalUnpacksNothing()
{
    Download download;
    download.driver.show(RunMode::Uninstall);
    QTest::qWait(2000);
    QVERIFY(!download.isUnpacking());
}

void TestInstallerWizardDownload::removalIsNotSimulated()
{
    Download download;
    QVERIFY(download.driver.startRun(RunMode::Uninstall));
    QCOMPARE(download.driver.progress().caption->text(), u"The uninstaller could not be found."_s);
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

void TestInstallerWizardDownload::damageEndsTheRun()
{
    Download download;
    download.file.alter(download.file.bundle.offset);
    download.engine.start();
    QTRY_VERIFY(download.engine.isFinished());
    QVERIFY(download.driver.startRun(RunMode::Update));
    QCOMPARE(download.driver.status(), u"Setup could not finish"_s);
    QCOMPARE(download.driver.progress().caption->text(), kDamaged);
    QCOMPARE(download.driver.buttons(), QStringList { u"Close danger"_s });
}

void TestInstallerWizardDownload::damagedFileHasOnePage()
{
    WizardDriver driver { QString() };
    driver.wizard.setRunMode(RunMode::Update);
    driver.wizard.showOnly(PageId::Damaged);
    driver.wizard.show();
    QVERIFY(QTest::qWaitForWindowExposed(&driver.wizard));
    WizardDriver::settle();
    QVERIFY(driver.shows("DamagedPage"));
    QVERIFY(labelOf(driver.currentPage(), kDamaged));
    QCOMPARE(driver.buttons(), QStringList { u"Close primary"_s });
    QCOMPARE(WizardDriver::runUntilQuit([&] { driver.lastKey(Qt::Key_Return); }), 0);
}

QTEST_MAIN(TestInstallerWizardDownload)
#include "tst_installerwizard_download.moc"
