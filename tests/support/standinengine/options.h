#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace standin {

/// The command line of a setup run or an uninstall run; both take the same switches.
struct Options
{
    std::string folder; ///< Empty: the engine chooses.
    std::vector<std::string> tasks;
    std::string statusFile;
    std::string logFile;
    std::string scenarioFile;
    std::vector<std::string> unknown; ///< Whole arguments, for the log.
    std::string commandLine; ///< All arguments, for the log.

    [[nodiscard]] bool hasTask(std::string_view name) const;
};

/// Arguments without the program path. Switch names ignore letter case, a value may stand in
/// double quotes, and the last of two equal switches wins.
[[nodiscard]] Options parseOptions(std::span<const std::string> arguments);

} // namespace standin
