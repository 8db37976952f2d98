#pragma once

#include "statuswriter.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace standin {

/// The points of a run at which it can go wrong.
enum class Stage {
    Start, ///< The log is open, nothing else has happened.
    BeforeStatus, ///< The folder is there, the status file is not.
    Half, ///< Half of the files are done.
    End, ///< All but the entry in the registry is done; the status says 100.
};

/// A scenario that cannot be read: the run must not go on as an honest one.
struct ScenarioError : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// How a run misbehaves. As it stands here it is an honest run.
struct Scenario
{
    std::optional<int> exitCode;
    std::string crashSignal; ///< Empty: no crash.
    std::optional<std::chrono::milliseconds> stallTime;
    std::optional<Stage> stage; ///< For those of the three below that are not set.
    std::optional<Stage> exitStage;
    std::optional<Stage> crashStage;
    std::optional<Stage> stallStage;
    std::optional<Stage> pauseStage; ///< None: no pause.

    bool finishAtOnce = false;
    bool ignoreTermination = false;
    std::optional<std::chrono::milliseconds> holdPipes;
    std::optional<std::chrono::milliseconds> secondProcess;
    std::uintmax_t floodBytes = 0;

    std::vector<std::string> messageBoxes;
    std::vector<std::string> logLines;
    bool logNone = false;
    std::uintmax_t logSize = 0;
    StatusQuirks status;

    std::optional<std::chrono::milliseconds> delay; ///< Per file.
    std::optional<std::size_t> fileCount;
    std::vector<std::filesystem::path> records;

    [[nodiscard]] bool exitsAt(Stage at) const;
    [[nodiscard]] bool crashesAt(Stage at) const;
    [[nodiscard]] bool stallsAt(Stage at) const;

    /// Boxes come right before the end that they explain.
    [[nodiscard]] bool showsMessagesAt(Stage at) const;
};

/// Reads "key = value" lines; a line that begins with '#' is a comment. Throws ScenarioError.
[[nodiscard]] Scenario parseScenario(const std::string &text);

/// The scenario of this run: the file named on the command line, else by VARNEL_ENGINE_SCENARIO,
/// else the one beside the executable, else none; the environment's settings added.
[[nodiscard]] Scenario findScenario(const std::string &fileFromOptions,
                                    const std::filesystem::path &executable);

} // namespace standin
