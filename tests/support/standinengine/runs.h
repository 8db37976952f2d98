#pragma once

#include "session.h"

// Both return the exit code, or throw EndOfRun or FileError.

/// Installs or updates the sample application: the folder, its files, the shortcut, an uninstaller,
/// the entry in the registry. What a failed run has made stays, as after a power failure.
[[nodiscard]] int runInstall(Session &session);

/// Removes what the list beside the uninstaller names, and in the end the uninstaller. A file that
/// cannot be removed stays and the run goes on; so do folders that hold somebody else's files.
[[nodiscard]] int runUninstall(Session &session);
