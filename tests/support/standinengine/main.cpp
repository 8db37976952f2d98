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

#include <cstdio>
#include <exception>
#include <span>
#include <string>
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

void recordArguments(const Scenario &scenario, const std::vector<std::string> &arguments)
{
    std::string line;
    for (const std::string &argument : arguments)
        line += (line.empty() ? '[' : ',') + json::quoted(argument);
    for (const fs::path &file : scenario.records)
        appendLine(file, line + ']');
}

int runEngine(Role role, const fs::path &executable, const std::vector<std::string> &arguments)
{
    Options options = parseOptions(std::span(arguments).subspan(1));
    Scenario scenario = findScenario(options.scenarioFile, executable);
    recordArguments(scenario, arguments);
    if (scenario.ignoreTermination)
        platform::ignoreTermination();
    if (scenario.holdPipes)
        platform::holdPipes(*scenario.holdPipes);
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
    if (platform::actAsPipeHolder())
        return 0;
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
