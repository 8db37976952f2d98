#pragma once

#include <QString>
#include <QStringList>

/// The command-line tail of a silent installation or update, ready to be handed to the process as
/// it is. Paths come out with native separators; a `%` in any of them is only a character.
[[nodiscard]] QString installArguments(const QString &folder, const QStringList &tasks,
                                       const QString &statusFile, const QString &logFile);

/// The command-line tail of a silent removal.
[[nodiscard]] QString uninstallArguments(const QString &statusFile);
