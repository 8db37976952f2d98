#pragma once

#include "pages/runmode.h"

#include <QString>

/// What has been decided so far. There is one for the whole window: pages show it and change it;
/// the run, the finish pages and the start of the application read it.
struct SetupChoices
{
    RunMode mode = RunMode::Install;
    /// Where the application is installed to and started from, with native separators. In an update
    /// it follows from the recorded folder; UpdateAvailablePage sets both.
    QString folder;
    /// Of the installed copy, as it is recorded; only in an update, empty if none is.
    QString recordedFolder;
    bool desktopShortcut = true;
    bool removesPreferences = false;
    /// The program that removes the installed copy; empty if there is none.
    QString uninstaller;
};
