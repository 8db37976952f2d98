#pragma once

#include "enginelog.h"
#include "options.h"
#include "scenario.h"
#include "statuswriter.h"

#include <chrono>
#include <cstddef>
#include <string_view>

namespace standin {

/// Thrown where the scenario wants the run to end.
struct EndOfRun
{
    int exitCode;
};

/// What an install run and an uninstall run share: the log, the status file, the pace, and the
/// scenario's interventions. Opened by start(), then fed by the run step by step.
class Session
{
public:
    Session(Options options, Scenario scenario);

    [[nodiscard]] const Options &options() const { return m_options; }
    [[nodiscard]] const Scenario &scenario() const { return m_scenario; }
    [[nodiscard]] EngineLog &log() { return m_log; }

    /// Opens the log and passes Stage::Start.
    void start();

    /// Passes Stage::BeforeStatus and writes the first status. All steps together take about the
    /// given time, unless the scenario sets the pace.
    void beginSteps(std::size_t count, std::chrono::milliseconds wholeTime,
                    std::string_view status);

    /// One of the announced steps is done: waits its time and writes the status.
    void completeStep(std::string_view file, std::string_view status);

    /// Throws EndOfRun, crashes, stalls or pauses where the scenario says so.
    void reach(Stage stage);

    void close();

private:
    void writeStatus(std::string_view file, std::string_view status);

    Options m_options;
    Scenario m_scenario;
    EngineLog m_log;
    StatusWriter m_status;
    std::chrono::milliseconds m_stepTime { 0 };
    std::size_t m_stepCount = 1;
    std::size_t m_stepsDone = 0;
};

} // namespace standin
