#include "app/applicationsetup.h"
#include "app/commandline.h"
#include "app/removalhandover.h"
#include "app/silentsetup.h"
#include "bundle/bundle.h"
#include "bundle/carriedengine.h"
#include "engine/installerengine.h"
#include "system/installation.h"
#include "wizard/installerwizard.h"

#include <QApplication>
#include <QDir>

#include <optional>

namespace {

/// What asks this process for a removal that its own file is in the way of; empty if nothing does.
/// The copy that is installed with the application has nothing else to do.
QString removalToHandOver(const CommandLine &commandLine, bool carriesEngine)
{
    if (!commandLine.handedOverBy.isEmpty())
        return commandLine.handedOverBy;
    const bool mayRemove = commandLine.runMode.value_or(RunMode::Uninstall) == RunMode::Uninstall;
    if (carriesEngine || !commandLine.setupExecutable.isEmpty() || !mayRemove)
        return {};
    const QDir installed(QDir::fromNativeSeparators(installLocation()));
    return installed.exists() && QDir(QApplication::applicationDirPath()) == installed
        ? uninstallerPath()
        : QString();
}

/// Shows the window and runs the event loop. The caller owns the engines, so that they are
/// destroyed, and clean up, after the window.
int runWizard(InstallerEngine &engine, CarriedEngine *carried, const CommandLine &commandLine,
              bool isDamaged)
{
    InstallerWizard wizard;
    wizard.setEngine(&engine);
    if (carried)
        wizard.setCarriedEngine(carried);
    wizard.setUninstallerPath(commandLine.uninstaller);
    if (commandLine.runMode)
        wizard.setRunMode(*commandLine.runMode);
    else
        wizard.setRunMode(isInstalled() ? RunMode::Update : RunMode::Install);
    if (isDamaged)
        wizard.showDamaged();
    wizard.show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    const std::optional<Bundle> bundle = carriedBundle();
    if (bundle && hasSilentSwitch(argc, argv)) {
        QCoreApplication application(argc, argv);
        return runSilently(*bundle);
    }

    QApplication application(argc, argv);
    const CommandLine commandLine = parseCommandLine(QApplication::arguments());
    if (const QString removal = removalToHandOver(commandLine, bundle.has_value());
        !removal.isEmpty())
        return handOverRemoval(removal);

    setUpApplication();
    const QString self = QApplication::applicationFilePath();
    std::optional<CarriedEngine> carried;
    if (bundle && commandLine.setupExecutable.isEmpty())
        carried.emplace(self, *bundle);
    InstallerEngine engine; // ends before the file that it may run goes
    engine.setSetupExecutable(commandLine.setupExecutable);
    return runWizard(engine, carried ? &*carried : nullptr, commandLine,
                     bundle && !isComplete(self, *bundle));
}
