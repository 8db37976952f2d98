#include "app/applicationsetup.h"
#include "app/commandline.h"
#include "app/processstart.h"
#include "app/qtvariables.h"
#include "app/removalhandover.h"
#include "app/silentsetup.h"
#include "bundle/bundle.h"
#include "bundle/carriedengine.h"
#include "engine/installerengine.h"
#include "files/elevation.h"
#include "system/installation.h"
#include "wizard/installerwizard.h"

#include <QApplication>
#include <QProcess>

#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The uninstaller of a removal that the file of this process is in the way of, so that another
/// copy has to show it; empty if there is none.
QString removalToHandOver(const CommandLine &commandLine, bool onlyRemoves)
{
    return commandLine.handedOverBy.isEmpty() && onlyRemoves ? uninstallerPath()
                                                             : commandLine.handedOverBy;
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
        wizard.showOnly(PageId::Damaged);
    wizard.show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    loadFromSystemFolderOnly();
    const QStringList arguments = processArguments(argc, argv);
    if (isElevated())
        removeQtVariables();

    const std::optional<Bundle> bundle = carriedBundle();
    if (bundle && hasSilentSwitch(argc, argv)) {
        QCoreApplication application(argc, argv);
        return runSilently(*bundle);
    }

    // Qt's own options ("-platform", "-style") would also work in an elevated process, so Qt gets
    // only the program's name there.
    int argumentsForQt = isElevated() ? 1 : argc;
    QApplication application(argumentsForQt, argv);
    CommandLine commandLine = parseCommandLine(arguments);
    // The copy that was installed with the application can only remove it.
    const QString folder = QApplication::applicationDirPath();
    const bool onlyRemoves = !bundle && isInstallFolder(folder);
    if (const QString removal = removalToHandOver(commandLine, onlyRemoves); !removal.isEmpty()) {
        const int code = handOverRemoval(removal);
        // An uninstaller that has asked for it goes on by itself, else it is still to be started.
        if (code != 0 && commandLine.handedOverBy.isEmpty())
            QProcess::startDetached(removal, {});
        return code;
    }
    if (onlyRemoves) {
        // Its uninstaller is missing, which the run will say.
        commandLine.runMode = RunMode::Uninstall;
        commandLine.uninstaller = uninstallerIn(folder);
    }

    setUpApplication();
    const QString self = QApplication::applicationFilePath();
    std::optional<CarriedEngine> carried;
    if (bundle)
        carried.emplace(self, *bundle);
    InstallerEngine engine; // declared after `carried`, as it may run that file until it goes
    engine.setSetupExecutable(commandLine.setupExecutable);
    // The end of the session ends the program right after this signal, without any destructor. The
    // engine is connected to it already, and so stops first.
    if (carried)
        QObject::connect(&application, &QCoreApplication::aboutToQuit, &*carried,
                         &CarriedEngine::remove);
    const bool isDamaged =
        bundle && commandLine.setupExecutable.isEmpty() && !isComplete(self, *bundle);
    return runWizard(engine, carried ? &*carried : nullptr, commandLine, isDamaged);
}
