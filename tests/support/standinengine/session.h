#pragma once

#include "reports.h"

#include <QMap>

/// The command line of a setup run or an uninstall run; both take the same switches. Their names
/// ignore letter case, a value may stand in double quotes, and the last of two equal ones wins.
struct Options
{
    /// Arguments without the program path.
    explicit Options(const QStringList &arguments);

    QMap<QString, QString> values; ///< By the switch's name in lower case.
};

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
    Session(const Options &options, const Scenario &scenario);

    [[nodiscard]] const Options &options() const { return m_options; }
    [[nodiscard]] const Scenario &scenario() const { return m_scenario; }
    [[nodiscard]] EngineLog &log() { return m_log; }

    /// Opens the log and passes Stage::Start.
    void start();

    /// Passes Stage::BeforeStatus and writes the first status. All steps together take about the
    /// given time, unless the scenario sets the pace.
    void beginSteps(qsizetype count, Scenario::Duration wholeTime, const QString &status);

    /// One of the announced steps is done: waits its time and writes the status.
    void completeStep(const QString &file, const QString &status);

    /// Throws EndOfRun, crashes, stalls or pauses where the scenario says so.
    void reach(Stage stage);

    void close();

private:
    const Options &m_options;
    const Scenario &m_scenario;
    EngineLog m_log;
    StatusWriter m_status;
    Scenario::Duration m_stepTime { 0 };
    qsizetype m_stepCount = 1;
    qsizetype m_stepsDone = 0;
};
