#pragma once

#include "pages/runmode.h"

#include <QString>
#include <QStringList>

#include <optional>

/// What the wizard was asked to do on its command line.
struct CommandLine
{
    QString setupExecutable; ///< "--setup-exe"; empty if absent or without a value
    QString uninstaller; ///< "--uninstaller"; likewise
    /// "--remove-with", given by an uninstaller that wants the wizard to show its removal; likewise
    QString handedOverBy;
    std::optional<RunMode> runMode; ///< empty if none was given: main() decides
};

/// Reads the argument list, which begins with the program. Options may come in any order and letter
/// case; of several modes, uninstall wins, then update. Unknown arguments are ignored.
[[nodiscard]] CommandLine parseCommandLine(const QStringList &arguments);
