#pragma once

#include "wizard/runmode.h"

#include <QString>
#include <QStringList>

#include <optional>

/// What the wizard was asked to do.
struct CommandLine
{
    QString setupExecutable; ///< "--setup-exe"; empty if absent or without a value
    QString uninstaller; ///< "--uninstaller"; likewise
    std::optional<RunMode> runMode; ///< nothing: to be decided by what is installed
};

/// Reads the argument list, program first. Options may stand in any order and letter case; of
/// several modes removal wins, then update. Nothing is ever rejected: unknown arguments are
/// ignored.
[[nodiscard]] CommandLine parseCommandLine(const QStringList &arguments);
