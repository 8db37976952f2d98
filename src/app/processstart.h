#pragma once

#include <QStringList>

/// From now on, libraries come from Windows' own folder alone, not from that of the program: it may
/// lie in the download folder. Nothing happens elsewhere.
void loadFromSystemFolderOnly();

/// The arguments that this process was started with, the program first. Unlike those of the
/// application object, they have all that Qt would take for itself.
[[nodiscard]] QStringList processArguments(int argc, const char *const *argv);
