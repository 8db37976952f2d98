#include "session.h"

#include "platform.h"

#include "product/product.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <cstdio>
#include <thread>

using namespace Qt::Literals::StringLiterals;

namespace {

/// As fast as the readers take it, on both channels in turn; ends early when they are closed.
void floodOutput(qint64 bytes)
{
    const QByteArray block = QByteArray(64 * 1024 - 1, '.') + '\n';
    for (std::FILE *channel = stdout; bytes > 0; channel = channel == stdout ? stderr : stdout) {
        const auto amount = size_t(std::min<qint64>(bytes, block.size()));
        if (std::fwrite(block.data(), 1, amount, channel) != amount || std::fflush(channel) != 0)
            return;
        bytes -= qint64(amount);
    }
}

} // namespace

Options::Options(const QStringList &arguments)
{
    static const QRegularExpression known(u"^/(dir|tasks|statusfile|log)=(.*)$"_s,
                                          QRegularExpression::CaseInsensitiveOption
                                              | QRegularExpression::DotMatchesEverythingOption);
    for (const QString &argument : arguments) {
        const QRegularExpressionMatch match = known.match(argument);
        QString value = match.captured(2);
        if (value.size() >= 2 && value.startsWith(u'"') && value.endsWith(u'"'))
            value = value.sliced(1, value.size() - 2);
        values[match.captured(1).toLower()] = value;
    }
}

Session::Session(const Options &options, const Scenario &scenario)
    : m_options(options), m_scenario(scenario), m_status(options.values[u"statusfile"_s], scenario)
{}

void Session::start()
{
    const QString logFile = m_options.values[u"log"_s];
    if (!logFile.isEmpty() && !m_scenario.logNone)
        m_log.open(logFile);
    m_log.line(u"Setup version: stand-in engine for version "_s + Product::kVersion);
    m_log.line(u"Setup command line: "_s + QCoreApplication::arguments().sliced(1).join(u' '));
    for (const QString &line : m_scenario.logLines)
        m_log.line(line);
    reach(Stage::Start);
}

void Session::beginSteps(qsizetype count, Scenario::Duration wholeTime, const QString &status)
{
    m_stepCount = count;
    m_stepTime = m_scenario.delay.value_or(wholeTime / count);
    reach(Stage::BeforeStatus);
    m_status.write(0, {}, status);
    floodOutput(m_scenario.floodBytes);
    m_log.padTo(m_scenario.logSize);
}

void Session::completeStep(const QString &file, const QString &status)
{
    std::this_thread::sleep_for(m_stepTime);
    ++m_stepsDone;
    m_status.write(100.0 * double(m_stepsDone) / double(m_stepCount), file, status);
}

void Session::reach(Stage stage)
{
    if (m_scenario.showsMessagesAt(stage)) {
        for (const QString &text : m_scenario.messageBoxes)
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
    m_log.line(u"Deinitializing Setup."_s);
    m_log.close();
}
