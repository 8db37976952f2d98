#include "scenario.h"

#include "files.h"
#include "platform.h"

#include <QMap>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

/// "Forever" ends some day, so that a forgotten engine does not stay for good.
constexpr Scenario::Duration kForever = std::chrono::minutes(10);

// Each of these reads one kind of value, or throws ScenarioError.

qint64 number(const QString &text, qint64 least, qint64 most)
{
    bool isNumber = false;
    const qint64 value = text.toLongLong(&isNumber);
    if (!isNumber || value < least || value > most)
        throw ScenarioError { u"not a number that is possible here: "_s % text };
    return value;
}

int exitCode(const QString &text)
{
    return int(number(text, INT_MIN, INT_MAX));
}

int fileCount(const QString &text)
{
    return int(number(text, 1, INT_MAX));
}

Scenario::Duration delay(const QString &text)
{
    return Scenario::Duration(number(text, 0, INT_MAX));
}

Scenario::Duration seconds(const QString &text)
{
    if (text == u"forever")
        return kForever;
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(value) || value < 0)
        throw ScenarioError { u"not a time: "_s % text };
    return Scenario::Duration(std::llround(value * 1000));
}

qint64 byteCount(const QString &text)
{
    const qsizetype power = text.isEmpty() ? 0 : u"KMG"_s.indexOf(text.back()) + 1;
    return number(power > 0 ? text.chopped(1) : text, 0, INT_MAX) << (10 * power);
}

qsizetype indexIn(const QStringList &possible, const QString &text)
{
    if (!possible.contains(text))
        throw ScenarioError { u"unknown value: "_s % text };
    return possible.indexOf(text);
}

bool yesOrNo(const QString &text)
{
    return indexIn({ u"no"_s, u"yes"_s }, text) == 1;
}

Stage stage(const QString &text)
{
    return Stage(indexIn({ u"start"_s, u"before-status"_s, u"half"_s, u"end"_s }, text));
}

StatusPlace statusPlace(const QString &text)
{
    return StatusPlace(
        indexIn({ u"normal"_s, u"directory"_s, u"deleted"_s, u"fifo"_s, u"never"_s }, text));
}

QStringList statusStyles(const QString &text)
{
    static const QStringList known { u"bom"_s,    u"crlf"_s,          u"half"_s,
                                     u"blanks"_s, u"upper-section"_s, u"no-final-newline"_s };
    QStringList styles;
    for (const QString &part : text.split(u','))
        styles << known[indexIn(known, part.trimmed())];
    return styles;
}

QString signalName(const QString &text)
{
    if (!platform::isSignal(text))
        throw ScenarioError { u"unknown signal: "_s % text };
    return text;
}

QString withLineFeeds(const QString &text)
{
    return QString(text).replace("\\n"_L1, "\n"_L1);
}

QString asItIs(const QString &text)
{
    return text;
}

/// A key that sets a member of the scenario.
template <auto Member, auto Read>
void set(Scenario &scenario, const QString &text)
{
    scenario.*Member = Read(text);
}

/// A key that may be repeated.
template <auto Member, auto Read = asItIs>
void add(Scenario &scenario, const QString &text)
{
    (scenario.*Member) << Read(text);
}

const QMap<QString, void (*)(Scenario &, const QString &)> kKeys {
    { u"exit-code"_s, set<&Scenario::exitCode, exitCode> },
    { u"crash"_s, set<&Scenario::crashSignal, signalName> },
    { u"stall"_s, set<&Scenario::stallTime, seconds> },
    { u"stage"_s, set<&Scenario::stage, stage> },
    { u"pause"_s, set<&Scenario::pauseStage, stage> },
    { u"finish-at-once"_s, set<&Scenario::finishAtOnce, yesOrNo> },
    { u"ignore-termination"_s, set<&Scenario::ignoreTermination, yesOrNo> },
    { u"hold-pipes"_s, set<&Scenario::holdPipes, seconds> },
    { u"second-process"_s, set<&Scenario::secondProcess, seconds> },
    { u"flood-stdout"_s, set<&Scenario::floodBytes, byteCount> },
    { u"message-box"_s, add<&Scenario::messageBoxes, withLineFeeds> },
    { u"log-line"_s, add<&Scenario::logLines, withLineFeeds> },
    { u"log-none"_s, set<&Scenario::logNone, yesOrNo> },
    { u"log-size"_s, set<&Scenario::logSize, byteCount> },
    { u"status-style"_s, set<&Scenario::statusStyles, statusStyles> },
    { u"status-path"_s, set<&Scenario::statusPlace, statusPlace> },
    { u"progress"_s, add<&Scenario::progress> },
    { u"file"_s, add<&Scenario::files> },
    { u"status"_s, add<&Scenario::statusTexts> },
    { u"delay-ms"_s, set<&Scenario::delay, delay> },
    { u"files"_s, set<&Scenario::fileCount, fileCount> },
};

void applyLine(Scenario &scenario, const QString &line)
{
    const qsizetype equals = line.indexOf(u'=');
    const auto key = kKeys.find(line.first(std::max<qsizetype>(equals, 0)).trimmed());
    if (key == kKeys.end())
        throw ScenarioError { u"unknown scenario line: "_s % line };
    try {
        (*key)(scenario, line.sliced(equals + 1).trimmed());
    } catch (const ScenarioError &error) {
        throw ScenarioError { u"scenario line \""_s % line % u"\": "_s % error.text };
    }
}

Scenario readScenario(const QString &file)
{
    const auto content = readFile(file);
    if (!content)
        throw ScenarioError { u"cannot read the scenario file "_s % file };
    Scenario scenario;
    for (const QString &whole : QString::fromUtf8(*content).split(u'\n')) {
        const QString line = whole.trimmed();
        if (!line.isEmpty() && !line.startsWith(u'#'))
            applyLine(scenario, line);
    }
    return scenario;
}

} // namespace

bool Scenario::exitsAt(Stage at) const
{
    return exitCode && at == stage.value_or(Stage::End);
}

bool Scenario::crashesAt(Stage at) const
{
    return !crashSignal.isEmpty() && at == stage.value_or(Stage::Half);
}

bool Scenario::stallsAt(Stage at) const
{
    return stallTime && at == stage.value_or(Stage::Half);
}

bool Scenario::showsMessagesAt(Stage at) const
{
    if (!crashSignal.isEmpty())
        return crashesAt(at);
    return exitCode ? exitsAt(at) : at == Stage::End;
}

Scenario findScenario()
{
    const QString file = qEnvironmentVariable("VARNEL_ENGINE_SCENARIO");
    Scenario scenario = file.isEmpty() ? Scenario() : readScenario(file);
    const QString pace = qEnvironmentVariable("VARNEL_ENGINE_DELAY_MS");
    if (!pace.isEmpty() && !scenario.delay)
        scenario.delay = delay(pace);
    return scenario;
}
