#pragma once

struct Bundle;

/// Whether one of the arguments is a switch of the setup engine for running without the wizard:
/// "/SILENT" or "/VERYSILENT", in any letter case.
[[nodiscard]] bool hasSilentSwitch(int argc, const char *const *argv);

/// Runs the engine of `bundle`, which this program carries, without any window of this program's
/// own, and waits for its end. The engine gets the command line of this process as it stands. The
/// result is its exit code; 3 if it could not be started, with the reason in the file of "/LOG=".
/// Needs a QCoreApplication and no desktop: deployment tools run as the system.
[[nodiscard]] int runSilently(const Bundle &bundle);
