#pragma once

#include <memory>

class QProcess;

/// A process and what it starts in turn. A setup engine's executable may only unpack and start the
/// program that does the work: whoever ends a run has to end both, and an uninstaller's last part
/// outlives the process that was started.
class ProcessTree
{
public:
    /// Of `process`, which has not been started and must still be there when kill() is called.
    explicit ProcessTree(QProcess &process);
    ~ProcessTree();

    /// To be called as soon as the process has been started, which may be waiting for it. Once is
    /// enough.
    void takeRoot();
    /// Whether one of them still runs; false too where the system cannot tell.
    [[nodiscard]] bool isAlive() const;
    /// Kills all of them, without waiting for their end.
    void kill();

private:
    struct Handles;

    QProcess &m_process;
    std::unique_ptr<Handles> m_handles;
};
