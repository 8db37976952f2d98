#include "session.h"

#include "files.h"
#include "platform.h"
#include "product.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <thread>

namespace standin {

namespace {

/// As fast as the readers take it, on both channels in turn; ends early when they are closed.
void floodOutput(std::uintmax_t bytes)
{
    const std::string block = std::string(64 * 1024 - 1, '.') + '\n';
    bool toError = false;
    while (bytes > 0) {
        std::FILE *channel = toError ? stderr : stdout;
        const auto amount = static_cast<std::size_t>(std::min<std::uintmax_t>(bytes, block.size()));
        if (std::fwrite(block.data(), 1, amount, channel) != amount || std::fflush(channel) != 0)
            return;
        bytes -= amount;
        toError = !toError;
    }
}

} // namespace

Session::Session(Options options, Scenario scenario)
    : m_options(std::move(options)),
      m_scenario(std::move(scenario)),
      m_status(toPath(m_options.statusFile), m_scenario.status)
{}

void Session::start()
{
    if (!m_options.logFile.empty() && !m_scenario.logNone)
        m_log.open(toPath(m_options.logFile));
    m_log.line("Setup version: stand-in engine for version " + std::string(product::kVersion));
    m_log.line("Setup command line: " + m_options.commandLine);
    for (const std::string &argument : m_options.unknown)
        m_log.line("Unknown switch, ignored: " + argument);
    for (const std::string &line : m_scenario.logLines)
        m_log.line(line);
    reach(Stage::Start);
}

void Session::beginSteps(std::size_t count, std::chrono::milliseconds wholeTime,
                         std::string_view status)
{
    m_stepCount = count;
    m_stepTime = m_scenario.delay.value_or(wholeTime / count);
    reach(Stage::BeforeStatus);
    writeStatus({}, status);
    floodOutput(m_scenario.floodBytes);
    m_log.padTo(m_scenario.logSize);
}

void Session::completeStep(std::string_view file, std::string_view status)
{
    std::this_thread::sleep_for(m_stepTime);
    ++m_stepsDone;
    writeStatus(file, status);
}

void Session::reach(Stage stage)
{
    if (m_scenario.showsMessagesAt(stage)) {
        for (const std::string &text : m_scenario.messageBoxes)
            m_log.messageBox(text);
    }
    if (m_scenario.pauseStage == stage)
        platform::pause();
    if (m_scenario.stallsAt(stage))
        std::this_thread::sleep_for(*m_scenario.stallTime);
    if (m_scenario.crashesAt(stage))
        platform::crash(m_scenario.crashSignal);
    if (m_scenario.exitsAt(stage))
        throw EndOfRun { *m_scenario.exitCode };
}

void Session::close()
{
    m_log.line("Deinitializing Setup.");
    m_log.close();
}

void Session::writeStatus(std::string_view file, std::string_view status)
{
    const double percent =
        100.0 * static_cast<double>(m_stepsDone) / static_cast<double>(m_stepCount);
    m_status.write(percent, file, status);
}

} // namespace standin
