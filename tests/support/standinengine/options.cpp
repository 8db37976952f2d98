#include "options.h"

#include "text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace standin {

namespace {

/// Accepted for the caller's sake: this engine has no window, no box and no restart anyway.
constexpr std::array<std::string_view, 3> kPlainSwitches = { "verysilent", "suppressmsgboxes",
                                                             "norestart" };

constexpr std::array<std::pair<std::string_view, std::string Options::*>, 4> kTextSwitches = { {
    { "dir", &Options::folder },
    { "statusfile", &Options::statusFile },
    { "log", &Options::logFile },
    { "scenario", &Options::scenarioFile },
} };

std::string_view withoutQuotes(std::string_view value)
{
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
        return value.substr(1, value.size() - 2);
    return value;
}

bool takeSwitch(Options &options, std::string_view argument)
{
    if (!argument.starts_with('/'))
        return false;
    const auto equals = std::min(argument.find('='), argument.size());
    const std::string name = lower(argument.substr(1, equals - 1));
    if (equals == argument.size())
        return std::ranges::find(kPlainSwitches, name) != kPlainSwitches.end();

    const std::string_view value = withoutQuotes(argument.substr(equals + 1));
    if (name == "tasks") {
        options.tasks = splitList(value);
        return true;
    }
    const auto found =
        std::ranges::find(kTextSwitches, name, [](const auto &entry) { return entry.first; });
    if (found == kTextSwitches.end())
        return false;
    options.*(found->second) = value;
    return true;
}

} // namespace

bool Options::hasTask(std::string_view name) const
{
    return std::ranges::any_of(
        tasks, [name](const std::string &task) { return sameIgnoringCase(task, name); });
}

Options parseOptions(std::span<const std::string> arguments)
{
    Options options;
    for (const std::string &argument : arguments) {
        if (!takeSwitch(options, argument))
            options.unknown.push_back(argument);
        options.commandLine += (options.commandLine.empty() ? "" : " ") + argument;
    }
    return options;
}

} // namespace standin
