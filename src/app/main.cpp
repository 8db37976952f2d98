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
#include <QDir>

#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Whether this is the copy that was installed with the application, which can only remove it.
bool isInstalledCopy()
{
    const QString folder = QDir::fromNativeSeparators(installLocation());
    return !folder.isEmpty() && QDir(QApplication::applicationDirPath()) == QDir(folder);
}

/// The uninstaller of a removal that the file of this process is in the way of; empty if there is
/// none.
QString removalToHandOver(const CommandLine &commandLine)
{
    return commandLine.handedOverBy.isEmpty() && isInstalledCopy() ? uninstallerPath()
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
        wizard.showDamaged();
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

    // Of administrator rights Qt's own options would make use as well ("-platform", "-style"), so
    // there it sees none but the program's name.
    int argumentsForQt = isElevated() ? 1 : argc;
    QApplication application(argumentsForQt, argv);
    CommandLine commandLine = parseCommandLine(arguments);
    if (const QString removal = removalToHandOver(commandLine); !removal.isEmpty())
        return handOverRemoval(removal);
    if (isInstalledCopy()) {
        // Its uninstaller is missing, which the run will say.
        commandLine.runMode = RunMode::Uninstall;
        commandLine.uninstaller =
            QDir(QApplication::applicationDirPath()).filePath(u"unins000.exe"_s);
    }

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
