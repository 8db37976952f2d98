#include "app/applicationfonts.h"
#include "app/applicationicon.h"
#include "app/commandline.h"
#include "engine/installerengine.h"
#include "product/product.h"
#include "system/installation.h"
#include "theme/thememanager.h"
#include "widgets/paintedaccessibility.h"
#include "wizard/installerwizard.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(Product::kSetupName.toString());
    QApplication::setOrganizationName(Product::kPublisher.toString());
    // The wizard ends the process itself: it may still have a program to start when its window is
    // gone.
    QApplication::setQuitOnLastWindowClosed(false);

    if (const QIcon icon = applicationIcon(); !icon.isNull())
        QApplication::setWindowIcon(icon);
    registerApplicationFonts();
    installPaintedAccessibility();
    ThemeManager::instance().setDarkMode(false);

    const CommandLine commandLine = parseCommandLine(QApplication::arguments());
    InstallerEngine engine;
    engine.setSetupExecutable(commandLine.setupExecutable);

    // Declared after the engine, so that the window goes first and the engine then cleans up.
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
