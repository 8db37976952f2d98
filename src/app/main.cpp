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

/// The page that `bundle`, which is in the file of this process, shows in place of all others; none
/// if it can do what it is for.
std::optional<PageId> blockingPage(const Bundle &bundle, const CommandLine &commandLine)
{
    if (!commandLine.setupExecutable.isEmpty())
        return {}; // nothing is taken from it
    if (!isComplete(QApplication::applicationFilePath(), bundle))
        return PageId::Damaged;
    if (commandLine.runMode != RunMode::Uninstall && isNewerInstalled())
        return PageId::NewerInstalled;
    return {};
}

/// Shows the window and runs the event loop. The caller owns the engines, so that they are
/// destroyed, and clean up, after the window.
int runWizard(InstallerEngine &engine, CarriedEngine *carried, const CommandLine &commandLine,
              std::optional<PageId> onlyPage)
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
    if (onlyPage)
        wizard.showOnly(*onlyPage);
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
    std::optional<CarriedEngine> carried;
    if (bundle)
        carried.emplace(QApplication::applicationFilePath(), *bundle);
    InstallerEngine engine; // declared after `carried`, as it may run that file until it goes
    engine.setSetupExecutable(commandLine.setupExecutable);
    // The end of the session ends the program right after this signal, without any destructor. The
    // engine is connected to it already, and so stops first.
    if (carried)
        QObject::connect(&application, &QCoreApplication::aboutToQuit, &*carried,
                         &CarriedEngine::remove);
    return runWizard(engine, carried ? &*carried : nullptr, commandLine,
                     bundle ? blockingPage(*bundle, commandLine) : std::nullopt);
}
