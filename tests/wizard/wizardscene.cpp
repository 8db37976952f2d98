#include "wizard/wizardscene.h"

#include "pages/checkrow.h"
#include "product/product.h"
#include "widgets/radiooption.h"
#include "wizard/installerfooterbar.h"
#include "wizard/runplan.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

#include <functional>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kPatience = 20'000; // ms

void waitFor(const std::function<bool()> &condition)
{
    const QDeadlineTimer end(kPatience);
    while (!condition()) {
        if (end.hasExpired())
            qFatal("The window does not come on");
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    }
}

/// A machine as most users have one, with a copy of `version` installed.
QJsonObject realisticRegistry(const QString &version = u"1.6.8"_s)
{
    const QString system = uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\)"_s;
    return {
        { system + uR"(Windows\CurrentVersion\Uninstall\)" + Product::kUninstallKey,
          QJsonObject { { u"DisplayVersion"_s, version },
                        { u"InstallLocation"_s, WizardScene::folder() } } },
    };
}

/// What is found on it.
QList<CheckResult> realisticFindings()
{
    return {
        judgeOperatingSystem({ .productName = u"Windows 10 Pro"_s,
                               .displayVersion = u"24H2"_s,
                               .build = 26100,
                               .prettyName = {},
                               .architecture = u"x86_64"_s }),
        judgeProcessor(u"Twelve-Core Processor"_s, 3793, {}),
        judgeMemory(17'179'869'184),
        judgeDiskSpace(412'316'860'416, uR"(C:\)"_s),
        judgeDisplay(QSize(2560, 1440), 59.94),
        judgeDotNet(533325),
        judgeVcRuntime(false),
        judgeWebView(u"131.0.2903.51"_s),
        judgeSmartAppControl(0),
    };
}

void reportProgress(WizardScene &scene)
{
    scene.report(0.43, WizardScene::folder() + u"Qt6Core.dll", u"Replacing files…"_s);
}

void fail(WizardScene &scene)
{
    scene.fail();
}

void warn(WizardScene &scene)
{
    auto *page = scene.control<SystemCheckPage>();
    page->setSmartAppControlOn(true);
    page->startReveal();
}

void damage(WizardScene &scene)
{
    scene.window().showOnly(PageId::Damaged);
}

void findNewer(WizardScene &scene)
{
    scene.findNewer();
}

} // namespace

QList<Scene> scenes()
{
    return {
        { "install-welcome", RunMode::Install, PageId::Welcome },
        { "install-license", RunMode::Install, PageId::License },
        { "install-systemcheck", RunMode::Install, PageId::SystemCheck },
        { "install-systemcheck-warning", RunMode::Install, PageId::SystemCheck, warn },
        { "install-destination", RunMode::Install, PageId::Destination },
        { "install-tasks", RunMode::Install, PageId::Tasks },
        { "install-ready", RunMode::Install, PageId::Ready },
        { "install-installing", RunMode::Install, PageId::Installing, reportProgress },
        { "install-finished", RunMode::Install, PageId::Finished },
        { "update-available", RunMode::Update, PageId::UpdateAvailable },
        { "update-ready", RunMode::Update, PageId::ReadyToUpdate },
        { "update-updating", RunMode::Update, PageId::Updating, reportProgress },
        { "update-failed", RunMode::Update, PageId::Updating, fail },
        { "update-finished", RunMode::Update, PageId::UpdateFinished },
        { "uninstall-confirm", RunMode::Uninstall, PageId::ConfirmUninstall },
        { "uninstall-uninstalling", RunMode::Uninstall, PageId::Uninstalling, reportProgress },
        { "uninstall-complete", RunMode::Uninstall, PageId::UninstallComplete },
        { "damaged", RunMode::Install, PageId::Welcome, damage },
        { "newer-installed", RunMode::Update, PageId::UpdateAvailable, findNewer },
    };
}

WizardScene::WizardScene()
{
    // The engine stands still; what it would say is said here.
    m_sandbox.setScenario("stall = forever\nstage = start\nstatus-path = never\nlog-none = yes\n");
    m_sandbox.setRegistry(realisticRegistry());
    // Without them the program's folder is the same everywhere.
    qunsetenv("ProgramFiles");
    qunsetenv("ProgramW6432");
    m_engine.setSetupExecutable(Sandbox::setupEngine());
}

QString WizardScene::folder()
{
    return uR"(C:\Program Files\Varnel Schematics\)"_s;
}

void WizardScene::open(RunMode mode)
{
    m_wizard = std::make_unique<InstallerWizard>();
    m_wizard->setEngine(&m_engine);
    m_wizard->setUninstallerPath(Sandbox::setupEngine());
    m_wizard->setRunMode(mode);
    m_wizard->show();
    m_mode = mode;
    m_page = runPlan(mode).firstPage;
    // The first page comes in once more when the window is on screen; this comes after it.
    bool hasEntered = false;
    QTimer::singleShot(0, m_wizard.get(), [&] { hasEntered = true; });
    waitFor([&] { return hasEntered; });
}

void WizardScene::goTo(PageId page)
{
    const RunPlan &plan = runPlan(m_mode);
    while (m_page != page) {
        if (m_page == plan.finishPage)
            qFatal("The page does not lie ahead");
        if (m_page == plan.progressPage)
            finish();
        else
            pressOn();
    }
}

void WizardScene::enter(const Scene &scene)
{
    open(scene.mode);
    goTo(scene.page);
    if (scene.then)
        scene.then(*this);
}

void WizardScene::pressOn()
{
    if (m_page == PageId::License)
        control<RadioOption>(u"I accept the license agreement"_s)->click();
    const FooterButton &way = pageStop(m_page).right;
    control<QPushButton>(InstallerWizard::tr(way.text))->click();
    m_page = way.command == Command::StartRun ? runPlan(m_mode).progressPage : way.target;
    if (m_page == PageId::SystemCheck || m_page == PageId::Destination)
        showRealisticFindings();
}

void WizardScene::showRealisticFindings()
{
    for (const CheckResult &finding : realisticFindings()) {
        for (auto *row : m_wizard->findChildren<SystemCheckPage::CheckRow *>()) {
            if (row->isVisible() && row->result().label == finding.label)
                row->setResult(finding);
        }
        for (QLabel *label : m_wizard->findChildren<QLabel *>()) {
            if (label->isVisible() && finding.label == "Disk space"_L1
                && label->text().contains(u" required · "_s))
                label->setText(finding.value);
        }
    }
}

void WizardScene::report(double fraction, const QString &file, const QString &status)
{
    Q_EMIT m_engine.progress(fraction);
    Q_EMIT m_engine.currentFile(file);
    Q_EMIT m_engine.statusChanged(status);
}

void WizardScene::fail(const QString &log)
{
    Q_EMIT m_engine.finished(false,
                             u"A fatal error occurred during installation.  There is not enough "
                             "space on the disk to install the program."_s
                                 + log);
}

void WizardScene::findNewer()
{
    m_sandbox.setRegistry(realisticRegistry(u"1.7.0"_s));
    m_wizard->showOnly(PageId::NewerInstalled);
    m_sandbox.setRegistry(realisticRegistry());
}

void WizardScene::finish()
{
    Q_EMIT m_engine.finished(true, QString());
    m_page = runPlan(m_mode).finishPage;
    // The completed run is looked at for a moment before its finish page comes.
    const QString status = InstallerWizard::tr(pageStop(m_page).status);
    const auto *footer = m_wizard->findChild<InstallerFooterBar *>()->findChild<QLabel *>();
    waitFor([&] { return footer->text() == status; });
}
