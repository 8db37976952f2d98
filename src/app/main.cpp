#include "app/applicationsetup.h"
#include "app/commandline.h"
#include "engine/installerengine.h"
#include "system/installation.h"
#include "wizard/installerwizard.h"

#include <QApplication>

namespace {

/// Shows the window and runs the event loop. The caller owns the engine, so that the engine is
/// destroyed, and cleans up, after the window.
int runWizard(InstallerEngine &engine, const CommandLine &commandLine)
{
    InstallerWizard wizard;
    wizard.setEngine(&engine);
    wizard.setUninstallerPath(commandLine.uninstaller);
    if (commandLine.runMode)
        wizard.setRunMode(*commandLine.runMode);
    else
        wizard.setRunMode(isInstalled() ? RunMode::Update : RunMode::Install);
    wizard.show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    setUpApplication();
    const CommandLine commandLine = parseCommandLine(QApplication::arguments());
    InstallerEngine engine;
    engine.setSetupExecutable(commandLine.setupExecutable);
    return runWizard(engine, commandLine);
}
