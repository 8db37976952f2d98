#pragma once

#include "engine/installerengine.h"
#include "support/sandbox.h"

#include <QObject>
#include <QStringList>

#include <memory>

class QProcess;

constexpr int kPatience = 20'000; ///< milliseconds

/// Records what an engine emits.
class EngineRecord : public QObject
{
public:
    explicit EngineRecord(InstallerEngine &engine);

    /// Waits until so many runs have been reported as ended; false if that takes too long.
    [[nodiscard]] bool waitForEnd(int runs = 1);
    /// Waits until the engine's own processes have ended and their signals have been delivered.
    void settle();

    /// One entry per signal: "progress 0.25", "file a", "status b", "finished", "failed why".
    QStringList events;
    QList<double> fractions;
    QStringList files;
    QStringList statuses;
    QStringList errors; ///< one per ended run; empty if it went well
    QList<bool> successes;

private:
    InstallerEngine &m_engine;
};

/// An engine in a sandbox of its own, and what it has emitted.
struct EngineScene
{
    explicit EngineScene(const QByteArray &scenario = {});

    /// Starts an installation into the sandbox's folder "app".
    void start();
    /// Starts one, and waits until so many runs have ended in all.
    [[nodiscard]] bool toTheEnd(int runs = 1);
    /// Starts an uninstaller that has no list of what to remove: unless the scenario says
    /// otherwise it fails.
    void startRemoval();

    void writeStatus(const QByteArray &text) const;
    void writeLog(const QByteArray &text) const;
    /// The process of the only run.
    [[nodiscard]] QProcess *process() const;
    /// Where the log of a failed run is kept, and what it says.
    [[nodiscard]] QString keptLog() const;
    [[nodiscard]] QByteArray keptText() const;

    Sandbox sandbox;
    std::unique_ptr<InstallerEngine> owner = std::make_unique<InstallerEngine>();
    InstallerEngine &engine = *owner;
    EngineRecord record { engine };
};

/// An installation that hangs half way.
struct HangingScene : EngineScene
{
    explicit HangingScene(const QByteArray &scenario = {});

    qint64 processId = 0;
};
