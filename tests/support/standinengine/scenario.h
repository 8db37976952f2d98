#pragma once

#include <QStringList>

#include <chrono>
#include <optional>

/// The points of a run at which it can go wrong, in the order of their names in scenario.cpp.
enum class Stage {
    Start, ///< The log is open, nothing else has happened.
    BeforeStatus, ///< The folder is there, the status file is not.
    Half, ///< Half of the files are done.
    End, ///< All but the entry in the registry is done; the status says 100.
};

/// What stands at the status file's path, in the order of the names in scenario.cpp.
enum class StatusPlace {
    Normal,
    Directory,
    Deleted, ///< There until half of the run is done, then gone for good.
    Fifo,
    Never,
};

/// A scenario that cannot be read: the run must not go on as an honest one.
struct ScenarioError
{
    QString text;
};

/// How a run misbehaves. As it stands here it is an honest run. README.md describes the keys.
struct Scenario
{
    using Duration = std::chrono::milliseconds;

    std::optional<int> exitCode;
    QString crashSignal; ///< Empty: no crash.
    std::optional<Duration> stallTime;
    std::optional<Stage> stage; ///< Of the three; else the end for an exit, half for the others.
    std::optional<Stage> pauseStage; ///< None: no pause.

    bool finishAtOnce = false;
    bool ignoreTermination = false;
    std::optional<Duration> holdPipes;
    std::optional<Duration> secondProcess;
    qint64 floodBytes = 0;

    QStringList messageBoxes;
    QStringList logLines;
    bool logNone = false;
    qint64 logSize = 0;

    StatusPlace statusPlace = StatusPlace::Normal;
    QStringList statusStyles;
    /// Played one per write instead of the honest value; the last one stays.
    QStringList progress;
    QStringList files;
    QStringList statusTexts;

    std::optional<Duration> delay; ///< Per step.
    std::optional<int> fileCount;

    [[nodiscard]] bool exitsAt(Stage at) const;
    [[nodiscard]] bool crashesAt(Stage at) const;
    [[nodiscard]] bool stallsAt(Stage at) const;

    /// Boxes come right before the end that they explain.
    [[nodiscard]] bool showsMessagesAt(Stage at) const;
};

/// The scenario of the file that VARNEL_ENGINE_SCENARIO names, and the environment's settings.
/// Throws ScenarioError.
[[nodiscard]] Scenario findScenario();
