#pragma once

#include <memory>

class QProcess;

/// A process and what it starts in turn. A setup engine's executable may only unpack and start the
/// program that does the work: whoever ends a run has to end both.
class ProcessTree
{
public:
    ProcessTree();
    ~ProcessTree();

    /// Takes in a process that has just been started, and from now on what it starts. A second one
    /// is not taken in.
    void add(const QProcess &process);
    /// Kills all of them; `process` is the one that was added.
    void kill(QProcess &process);

private:
    struct Handles;
    std::unique_ptr<Handles> m_handles;
};
