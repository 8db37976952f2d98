#include "wizard/runplan.h"

#include <QCoreApplication>

#include <iterator>

namespace {

// clang-format off
constexpr RunPlan kPlans[] = {
    { .mode = RunMode::Install,
      .firstPage = PageId::Welcome,
      .progressPage = PageId::Installing,
      .finishPage = PageId::Finished,
      .underWay = QT_TRANSLATE_NOOP("InstallerWizard", "Varnel Schematics is being installed."),
      .fillsMark = true,
      .simulationStep = 2.2,
      .steps = { QT_TRANSLATE_NOOP("InstallerWizard", "Extracting application files"),
                 QT_TRANSLATE_NOOP("InstallerWizard", "Installing WebView2 Runtime"),
                 QT_TRANSLATE_NOOP("InstallerWizard", "Registering .sch and .pcb file types"),
                 QT_TRANSLATE_NOOP("InstallerWizard", "Creating shortcuts") } },
    { .mode = RunMode::Update,
      .firstPage = PageId::UpdateAvailable,
      .progressPage = PageId::Updating,
      .finishPage = PageId::UpdateFinished,
      .underWay = QT_TRANSLATE_NOOP("InstallerWizard", "Varnel Schematics is being updated."),
      .fillsMark = true,
      .simulationStep = 2.4,
      .steps = { QT_TRANSLATE_NOOP("InstallerWizard", "Backing up your settings"),
                 QT_TRANSLATE_NOOP("InstallerWizard", "Replacing application files"),
                 QT_TRANSLATE_NOOP("InstallerWizard", "Migrating configuration"),
                 QT_TRANSLATE_NOOP("InstallerWizard", "Restarting services") } },
    { .mode = RunMode::Uninstall,
      .firstPage = PageId::ConfirmUninstall,
      .progressPage = PageId::Uninstalling,
      .finishPage = PageId::UninstallComplete,
      .underWay = QT_TRANSLATE_NOOP("InstallerWizard", "Varnel Schematics is being removed."),
      .fillsMark = false,
      .simulationStep = 2.4,
      .steps = { QT_TRANSLATE_NOOP("InstallerWizard", "Stopping Varnel Schematics"),
                 QT_TRANSLATE_NOOP("InstallerWizard", "Removing application files"),
                 QT_TRANSLATE_NOOP("InstallerWizard", "Removing shortcuts"),
                 QT_TRANSLATE_NOOP("InstallerWizard", "Unregistering file types") } },
};
// clang-format on

constexpr bool hasARowForEachModeInOrder()
{
    for (size_t i = 0; i < std::size(kPlans); ++i) {
        if (kPlans[i].mode != RunMode(i))
            return false;
    }
    return std::size(kPlans) == size_t(RunMode::Uninstall) + 1;
}
static_assert(hasARowForEachModeInOrder());

} // namespace

const RunPlan &runPlan(RunMode mode)
{
    return kPlans[int(mode)];
}

QStringList runSteps(RunMode mode, bool removesPreferences)
{
    QStringList steps;
    for (const char *step : runPlan(mode).steps)
        steps.append(QCoreApplication::translate("InstallerWizard", step));
    if (mode == RunMode::Uninstall && removesPreferences)
        steps.append(QCoreApplication::translate("InstallerWizard", "Removing user data"));
    return steps;
}
