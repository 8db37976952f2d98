#pragma once

#include <QString>

/// Memory that this process holds at present, in bytes; -1 where that says nothing about what it
/// needs, because freed memory is kept on purpose.
[[nodiscard]] qint64 residentMemory();

/// What this process has read through system calls so far, in bytes; -1 where the system won't say.
[[nodiscard]] qint64 bytesRead();

/// Whether there is a process with this number, an ended one that nobody has waited for included.
[[nodiscard]] bool processExists(qint64 processId);

/// Makes a FIFO; false if it cannot be made or if the system has none.
[[nodiscard]] bool makeFifo(const QString &path);
