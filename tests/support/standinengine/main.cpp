#include "exitcodes.h"
#include "files.h"
#include "installrun.h"
#include "json.h"
#include "options.h"
#include "platform.h"
#include "scenario.h"
#include "session.h"
#include "text.h"
#include "uninstallrun.h"

#include <chrono>
#include <cstdio>
#include <exception>
#include <fstream>
#include <span>
#include <string>
#include <thread>
#include <vector>

namespace fs = std::filesystem;
using namespace standin;

namespace {

/// One program, three parts to play: what it was copied as decides.
enum class Role { Setup, Uninstaller, Application };

Role roleOf(const fs::path &executable)
{
    const std::string name = lower(toUtf8(executable.stem()));
    if (name.starts_with("unins000"))
        return Role::Uninstaller;
    return name == "varnelsolutions" ? Role::Application : Role::Setup;
}

void recordLaunch(const std::vector<std::string> &arguments)
{
    std::string line = arguments.front() + '\t' + toUtf8(fs::current_path());
    for (const std::string &argument : std::span(arguments).subspan(1))
        line += '\t' + argument;
    const std::string file = platform::environment("VARNEL_LAUNCH_RECORD");
    if (!file.empty())
        appendLine(toPath(file), line);
}

void record(const Scenario &scenario, const std::vector<std::string> &texts)
{
    std::string line;
    for (const std::string &text : texts)
        line += (line.empty() ? '[' : ',') + json::quoted(text);
    for (const fs::path &file : scenario.records)
        appendLine(file, line + ']');
}

/// Reports as a setup does that works in a process of its own: it keeps the log open and rewrites
/// the status file. What is not there it does not make.
int runSecondProcess(const Options &options, const Scenario &scenario)
{
    using std::chrono::steady_clock;
    constexpr auto kExisting = std::ios::in | std::ios::out | std::ios::binary;
    constexpr std::string_view kReport = "status=Second process\n";
    const fs::path status = toPath(options.statusFile);
    std::fstream log(toPath(options.logFile), kExisting | std::ios::ate);
    const auto end = steady_clock::now() + *scenario.secondProcess;
    for (int i = 0; steady_clock::now() < end; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        log << "Dest filename: second process " << i << std::endl;
        if (std::fstream(status, kExisting) << kReport) {
            std::error_code ignored;
            fs::resize_file(status, kReport.size(), ignored);
        }
    }
    record(scenario, { "second process is done" });
    return exitcode::kSuccess;
}

int runEngine(Role role, const fs::path &executable, const std::vector<std::string> &arguments)
{
    Options options = parseOptions(std::span(arguments).subspan(1));
    Scenario scenario = findScenario(options.scenarioFile, executable);
    if (scenario.holdPipes && platform::splitOff("hold-pipes") == 0) {
        std::this_thread::sleep_for(*scenario.holdPipes);
        return exitcode::kSuccess;
    }
    if (scenario.secondProcess) {
        const long long process = platform::splitOff("second-process");
        if (process == 0)
            return runSecondProcess(options, scenario);
        record(scenario, { "second process", std::to_string(process) });
    }
    record(scenario, arguments);
    if (scenario.ignoreTermination)
        platform::ignoreTermination();
    if (scenario.finishAtOnce)
        return scenario.exitCode.value_or(exitcode::kSuccess);

    Session session(std::move(options), std::move(scenario));
    int exitCode = exitcode::kFatalError;
    try {
        exitCode = role == Role::Uninstaller ? UninstallRun(session, executable).run()
                                             : InstallRun(session, executable).run();
    } catch (const EndOfRun &end) {
        exitCode = end.exitCode;
    } catch (const std::exception &error) {
        session.log().messageBox(error.what());
    }
    session.close();
    return exitCode;
}

} // namespace

int main(int argc, char **argv)
{
    platform::ignoreBrokenPipes();
    try {
        const std::vector<std::string> arguments = platform::commandLine(argc, argv);
        const fs::path executable = platform::ownExecutable(arguments.at(0));
        const Role role = roleOf(executable);
        if (role != Role::Application)
            return runEngine(role, executable, arguments);
        recordLaunch(arguments);
        return 0;
    } catch (const ScenarioError &error) {
        std::fprintf(stderr, "standin-setup: %s\n", error.what());
        return exitcode::kBadScenario;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "standin-setup: %s\n", error.what());
        return exitcode::kFatalError;
    }
}
