#pragma once

#include <memory>

class QProcess;

/// A process and all that it starts. The executable of a setup engine may only unpack and start the
/// program that does the work, so both have to be killed to end a run; and the last process of an
/// uninstaller outlives the one that was started.
class ProcessTree
{
public:
    /// Of `process`, which has not been started and must still be there when kill() is called.
    explicit ProcessTree(QProcess &process);
    ~ProcessTree();

    /// Call this once, as soon as the process has been started: on Windows it is suspended until
    /// then.
    void attach();
    /// Whether one of them still runs; false too where the system cannot tell.
    [[nodiscard]] bool isAlive() const;
    /// Kills all of them, without waiting for their end.
    void kill();

private:
    struct Handles;

    QProcess &m_process;
    std::unique_ptr<Handles> m_handles;
};
