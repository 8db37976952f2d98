#pragma once

#include <memory>

class QProcess;

/// A process and what it starts in turn. A setup engine's executable may only unpack and start the
/// program that does the work: whoever ends a run has to end both.
class ProcessTree
{
public:
    /// Of `process`, which has not been started and must still be there when kill() is called.
    explicit ProcessTree(QProcess &process);
    ~ProcessTree();

    void kill();

private:
    struct Job;

    QProcess &m_process;
    std::unique_ptr<Job> m_job;
};
