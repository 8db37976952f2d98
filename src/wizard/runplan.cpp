#include "wizard/runplan.h"

#include <QCoreApplication>

#include <array>

namespace {

constexpr RunPlan kPlans[] = {
    { PageId::Installing, PageId::Finished, true, 2.2 },
    { PageId::Updating, PageId::UpdateFinished, true, 2.4 },
    { PageId::Uninstalling, PageId::UninstallComplete, false, 2.4 },
};

constexpr std::array<const char *, 4> kSteps[] = {
    { QT_TRANSLATE_NOOP("InstallerWizard", "Extracting application files"),
      QT_TRANSLATE_NOOP("InstallerWizard", "Installing WebView2 Runtime"),
      QT_TRANSLATE_NOOP("InstallerWizard", "Registering .sch and .pcb file types"),
      QT_TRANSLATE_NOOP("InstallerWizard", "Creating shortcuts") },
    { QT_TRANSLATE_NOOP("InstallerWizard", "Backing up your settings"),
      QT_TRANSLATE_NOOP("InstallerWizard", "Replacing application files"),
      QT_TRANSLATE_NOOP("InstallerWizard", "Migrating configuration"),
      QT_TRANSLATE_NOOP("InstallerWizard", "Restarting services") },
    { QT_TRANSLATE_NOOP("InstallerWizard", "Stopping Varnel Schematics"),
      QT_TRANSLATE_NOOP("InstallerWizard", "Removing application files"),
      QT_TRANSLATE_NOOP("InstallerWizard", "Removing shortcuts"),
      QT_TRANSLATE_NOOP("InstallerWizard", "Unregistering file types") },
};

} // namespace

const RunPlan &runPlan(RunMode mode)
{
    return kPlans[int(mode)];
}

QStringList runSteps(RunMode mode, bool removesUserData)
{
    QStringList steps;
    for (const char *step : kSteps[int(mode)])
        steps.append(QCoreApplication::translate("InstallerWizard", step));
    if (mode == RunMode::Uninstall && removesUserData)
        steps.append(QCoreApplication::translate("InstallerWizard", "Removing user data"));
    return steps;
}
