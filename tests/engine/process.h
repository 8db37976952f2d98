#pragma once

#include <QString>
#include <QtGlobal>

#include <chrono>

/// The most memory that this process has held so far, in bytes; -1 where that says nothing about
/// what it needs, because freed memory is kept on purpose.
[[nodiscard]] qint64 peakMemory();

/// What this process has read through system calls so far, in bytes; -1 where that is not known.
[[nodiscard]] qint64 bytesRead();

/// Whether there is a process with this number: on Unix also an ended one, until its parent has
/// waited for it.
[[nodiscard]] bool processExists(qint64 processId);

/// Whether that process still runs.
[[nodiscard]] bool isRunning(qint64 processId);

/// Kills a process at once, despite LateKill.
void endProcess(qint64 processId);

/// Makes a FIFO; false if it cannot be made or if the system has none.
[[nodiscard]] bool makeFifo(const QString &path);

/// As long as it lives, processes that this one kills go on for a while; not on Windows.
class LateKill
{
public:
    explicit LateKill(std::chrono::milliseconds delay);
    ~LateKill();
    Q_DISABLE_COPY_MOVE(LateKill)
};

/// As long as it lives, the file cannot be removed on Windows.
class HeldFile
{
public:
    explicit HeldFile(const QString &path);
    ~HeldFile();
    Q_DISABLE_COPY_MOVE(HeldFile)

private:
    [[maybe_unused]] void *m_handle = nullptr;
};
