#include "scenario.h"

#include "files.h"
#include "platform.h"
#include "text.h"

#include <charconv>
#include <cmath>
#include <map>
#include <sstream>
#include <string_view>

namespace standin {

namespace {

using std::chrono::milliseconds;

/// "Forever" ends some day, so that a forgotten engine does not stay for good.
constexpr milliseconds kForever = std::chrono::minutes(10);

constexpr std::string_view kBesideExecutable = "standin-setup.scenario";

using Key = std::map<std::string_view, void (*)(Scenario &, const std::string &)>;

template <typename Number>
Number number(std::string_view text)
{
    Number value = {};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        throw ScenarioError("not a number: " + std::string(text));
    return value;
}

milliseconds seconds(const std::string &text)
{
    if (text == "forever")
        return kForever;
    const double value = number<double>(text);
    if (!std::isfinite(value) || value < 0)
        throw ScenarioError("not a time: " + text);
    return milliseconds(std::llround(value * 1000));
}

milliseconds delay(const std::string &text)
{
    return milliseconds(number<unsigned>(text));
}

std::uintmax_t byteCount(std::string_view text)
{
    constexpr std::string_view kSuffixes = "KMG";
    const auto power = text.empty() ? std::string_view::npos : kSuffixes.find(text.back());
    if (power == std::string_view::npos)
        return number<std::uintmax_t>(text);
    return number<std::uintmax_t>(text.substr(0, text.size() - 1)) << (10 * (power + 1));
}

bool yesOrNo(const std::string &text)
{
    if (text != "yes" && text != "no")
        throw ScenarioError("neither yes nor no: " + text);
    return text == "yes";
}

std::string withLineFeeds(const std::string &text)
{
    return replaced(text, "\\n", "\n");
}

template <typename Meaning>
Meaning oneOf(const std::map<std::string_view, Meaning> &meanings, const std::string &text)
{
    const auto found = meanings.find(text);
    if (found == meanings.end())
        throw ScenarioError("unknown value: " + text);
    return found->second;
}

Stage stage(const std::string &text)
{
    return oneOf<Stage>({ { "start", Stage::Start },
                          { "before-status", Stage::BeforeStatus },
                          { "half", Stage::Half },
                          { "end", Stage::End } },
                        text);
}

StatusPlace statusPlace(const std::string &text)
{
    return oneOf<StatusPlace>({ { "normal", StatusPlace::Normal },
                                { "directory", StatusPlace::Directory },
                                { "deleted", StatusPlace::Deleted },
                                { "fifo", StatusPlace::Fifo },
                                { "never", StatusPlace::Never } },
                              text);
}

void applyStatusStyle(StatusQuirks &quirks, const std::string &style)
{
    using Change = void (*)(StatusQuirks &);
    oneOf<Change>({ { "plain", [](StatusQuirks &) {} },
                    { "bom", [](StatusQuirks &q) { q.byteOrderMark = true; } },
                    { "crlf", [](StatusQuirks &q) { q.carriageReturns = true; } },
                    { "no-final-newline", [](StatusQuirks &q) { q.finalNewline = false; } },
                    { "half", [](StatusQuirks &q) { q.half = true; } },
                    { "torn", [](StatusQuirks &q) { q.torn = true; } },
                    { "upper-section", [](StatusQuirks &q) { q.upperSection = true; } },
                    { "no-section", [](StatusQuirks &q) { q.section = false; } },
                    { "blanks", [](StatusQuirks &q) { q.blanks = true; } } },
                  style)(quirks);
}

std::string signalName(const std::string &text)
{
    if (!platform::isSignal(text))
        throw ScenarioError("unknown signal: " + text);
    return text;
}

std::size_t fileCount(const std::string &text)
{
    const auto count = number<std::size_t>(text);
    if (count == 0)
        throw ScenarioError("at least one file is needed");
    return count;
}

void applyStatusStyles(Scenario &scenario, const std::string &list)
{
    for (const std::string &style : splitList(list))
        applyStatusStyle(scenario.status, style);
}

// clang-format off
const Key kKeys = {
    { "exit-code", [](Scenario &s, const std::string &v) { s.exitCode = number<int>(v); } },
    { "crash", [](Scenario &s, const std::string &v) { s.crashSignal = signalName(v); } },
    { "stall", [](Scenario &s, const std::string &v) { s.stallTime = seconds(v); } },
    { "stage", [](Scenario &s, const std::string &v) { s.stage = stage(v); } },
    { "exit-stage", [](Scenario &s, const std::string &v) { s.exitStage = stage(v); } },
    { "crash-stage", [](Scenario &s, const std::string &v) { s.crashStage = stage(v); } },
    { "stall-stage", [](Scenario &s, const std::string &v) { s.stallStage = stage(v); } },
    { "pause", [](Scenario &s, const std::string &v) { s.pauseStage = stage(v); } },
    { "finish-at-once", [](Scenario &s, const std::string &v) { s.finishAtOnce = yesOrNo(v); } },
    { "ignore-termination",
      [](Scenario &s, const std::string &v) { s.ignoreTermination = yesOrNo(v); } },
    { "hold-pipes", [](Scenario &s, const std::string &v) { s.holdPipes = seconds(v); } },
    { "second-process",
      [](Scenario &s, const std::string &v) { s.secondProcess = seconds(v); } },
    { "flood-stdout", [](Scenario &s, const std::string &v) { s.floodBytes = byteCount(v); } },
    { "message-box",
      [](Scenario &s, const std::string &v) { s.messageBoxes.push_back(withLineFeeds(v)); } },
    { "log-line",
      [](Scenario &s, const std::string &v) { s.logLines.push_back(withLineFeeds(v)); } },
    { "log-none", [](Scenario &s, const std::string &v) { s.logNone = yesOrNo(v); } },
    { "log-size", [](Scenario &s, const std::string &v) { s.logSize = byteCount(v); } },
    { "status-style", applyStatusStyles },
    { "status-path", [](Scenario &s, const std::string &v) { s.status.place = statusPlace(v); } },
    { "progress", [](Scenario &s, const std::string &v) { s.status.progress.push_back(v); } },
    { "file", [](Scenario &s, const std::string &v) { s.status.files.push_back(v); } },
    { "status", [](Scenario &s, const std::string &v) { s.status.texts.push_back(v); } },
    { "delay-ms", [](Scenario &s, const std::string &v) { s.delay = delay(v); } },
    { "files", [](Scenario &s, const std::string &v) { s.fileCount = fileCount(v); } },
    { "record", [](Scenario &s, const std::string &v) { s.records.push_back(toPath(v)); } },
};
// clang-format on

Scenario readScenario(const std::filesystem::path &file)
{
    const auto text = readFile(file);
    if (!text)
        throw ScenarioError("cannot read the scenario file " + toUtf8(file));
    return parseScenario(*text);
}

} // namespace

bool Scenario::exitsAt(Stage at) const
{
    return exitCode && at == exitStage.value_or(stage.value_or(Stage::End));
}

bool Scenario::crashesAt(Stage at) const
{
    return !crashSignal.empty() && at == crashStage.value_or(stage.value_or(Stage::Half));
}

bool Scenario::stallsAt(Stage at) const
{
    return stallTime && at == stallStage.value_or(stage.value_or(Stage::Half));
}

bool Scenario::showsMessagesAt(Stage at) const
{
    if (!crashSignal.empty())
        return crashesAt(at);
    return exitCode ? exitsAt(at) : at == Stage::End;
}

Scenario parseScenario(const std::string &text)
{
    Scenario scenario;
    std::istringstream stream(text);
    for (std::string whole; std::getline(stream, whole);) {
        const std::string line(trimmed(whole));
        if (line.empty() || line.starts_with('#'))
            continue;
        const auto equals = std::min(line.find('='), line.size());
        const auto key = kKeys.find(trimmed(std::string_view(line).substr(0, equals)));
        if (equals == line.size() || key == kKeys.end())
            throw ScenarioError("unknown scenario line: " + line);
        try {
            key->second(scenario, std::string(trimmed(line.substr(equals + 1))));
        } catch (const ScenarioError &error) {
            throw ScenarioError("scenario line \"" + line + "\": " + error.what());
        }
    }
    return scenario;
}

Scenario findScenario(const std::string &fileFromOptions, const std::filesystem::path &executable)
{
    const std::string fromEnvironment = platform::environment("VARNEL_ENGINE_SCENARIO");
    const auto beside = executable.parent_path() / kBesideExecutable;

    Scenario scenario;
    if (!fileFromOptions.empty())
        scenario = readScenario(toPath(fileFromOptions));
    else if (!fromEnvironment.empty())
        scenario = readScenario(toPath(fromEnvironment));
    else if (std::filesystem::exists(beside))
        scenario = readScenario(beside);

    if (const std::string text = platform::environment("VARNEL_ENGINE_DELAY_MS");
        !text.empty() && !scenario.delay)
        scenario.delay = delay(text);
    if (const std::string file = platform::environment("VARNEL_ENGINE_RECORD"); !file.empty())
        scenario.records.push_back(toPath(file));
    return scenario;
}

} // namespace standin
