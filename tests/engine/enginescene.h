#pragma once

#include "engine/installerengine.h"
#include "support/sandbox.h"

#include <QObject>
#include <QStringList>

/// Writes down what an engine tells, in the order it tells it, and waits for the end of a run.
class EngineRecord : public QObject
{
public:
    explicit EngineRecord(InstallerEngine &engine);

    /// Waits until so many runs have been reported as ended; false after a generous while.
    [[nodiscard]] bool waitForEnd(int runs = 1);
    /// Waits until no process of the engine is alive and all that it told has arrived.
    void settle();

    /// One entry per signal: "progress 0.25", "file a", "status b", "finished", "failed why".
    QStringList told;
    QList<double> fractions;
    QStringList files;
    QStringList statuses;
    QStringList errors; ///< one per ended run; empty if it went well
    QList<bool> successes;

private:
    InstallerEngine &m_engine;
};

/// An installing engine in a world of its own, and what it told.
struct EngineScene
{
    explicit EngineScene(const QByteArray &scenario);

    void start();
    /// Starts, and waits until so many runs are over altogether.
    [[nodiscard]] bool toTheEnd(int runs = 1);

    /// Where the log of a failed run is kept, and what it says.
    [[nodiscard]] QString keptLog() const;
    [[nodiscard]] QByteArray keptText() const;

    Sandbox sandbox;
    InstallerEngine engine;
    EngineRecord record { engine };
};

/// What a process object of its own says about running `program`.
[[nodiscard]] QString processErrorText(const QString &program);
