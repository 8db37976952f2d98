#pragma once

#include "pages/runmode.h"

#include <QString>

/// What has been decided so far. There is one for the whole window: pages show it and change it;
/// the run, the finish pages and the start of the application read it.
struct SetupChoices
{
    RunMode mode = RunMode::Install;
    /// Where the application goes or, in an update, is; with native separators.
    QString folder;
    bool desktopShortcut = true;
    bool removesPreferences = false;
    /// The program that removes the installed copy; empty if there is none.
    QString uninstaller;
};
