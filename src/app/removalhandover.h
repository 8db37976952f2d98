#pragma once

#include <QString>

/// Windows' list of programs starts the uninstaller, which starts the installed copy of this
/// program, so that the removal is seen in its window. A program cannot remove the folder that it
/// runs from, so this copies itself to a private folder in the temp folder and starts the copy,
/// which waits for the uninstaller's end and then runs it silently. Windows removes the copy when
/// it starts the next time.
///
/// Returns, when the window of the copy is on screen, the exit code of this process: 0, or 1 if the
/// uninstaller has to go on by itself.
[[nodiscard]] int handOverRemoval(const QString &uninstaller);
