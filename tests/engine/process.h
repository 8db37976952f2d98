#pragma once

#include <QString>
#include <QtGlobal>

#include <chrono>

/// The most memory that this process has held so far, in bytes; -1 where that says nothing about
/// what it needs, because freed memory is kept on purpose.
[[nodiscard]] qint64 peakMemory();

/// What this process has read through system calls so far, in bytes; -1 where the system won't say.
[[nodiscard]] qint64 bytesRead();

/// Whether there is a process with this number, an ended one included that nobody has waited for on
/// systems where somebody has to.
[[nodiscard]] bool processExists(qint64 processId);

/// Whether that process still runs: not if it has ended, although nobody has waited for it.
[[nodiscard]] bool isRunning(qint64 processId);

/// Ends a process of the test's own, at once.
void endProcess(qint64 processId);

/// Makes a FIFO; false if it cannot be made or if the system has none.
[[nodiscard]] bool makeFifo(const QString &path);

/// As long as it lives, this process can open no more files, pipes or connections.
class NoMoreFiles
{
public:
    NoMoreFiles();
    ~NoMoreFiles();
    Q_DISABLE_COPY_MOVE(NoMoreFiles)

    /// False where processes have no such limit.
    [[nodiscard]] static bool isPossible();

private:
    [[maybe_unused]] quint64 m_limitBefore = 0;
};

/// As long as it lives, whom this process kills goes on for a while.
class LateKill
{
public:
    explicit LateKill(std::chrono::milliseconds delay);
    ~LateKill();
    Q_DISABLE_COPY_MOVE(LateKill)

    /// False where a kill cannot be put off.
    [[nodiscard]] static bool isPossible();
};

/// As long as it lives, nobody can remove a file.
class HeldFile
{
public:
    explicit HeldFile(const QString &path);
    ~HeldFile();
    Q_DISABLE_COPY_MOVE(HeldFile)

    /// False where a file cannot be held.
    [[nodiscard]] static bool isPossible();

private:
    [[maybe_unused]] void *m_handle = nullptr;
};
