#pragma once

#include <QtGlobal>

// What this process takes up now, for tests in which it must not grow.

/// Memory that it holds, in kB; -1 where it is not told.
[[nodiscard]] qint64 memoryInUse();

/// Files, pipes and connections that it has open; -1 where they cannot be counted.
[[nodiscard]] qsizetype openHandles();
