#pragma once

#include <QString>

class QIODevice;

/// The line of a setup engine's log that best explains why the run failed; empty if the log holds
/// no line. In this order: the text of the last suppressed message box; the first line with the
/// word "exception", "error" or "failed"; the last line. Blank lines are ignored.
///
/// Reads `log` once, from its position to its present end (a sequential device: to its end), in
/// constant memory; of a line beyond 64 KiB only the beginning is searched.
[[nodiscard]] QString failureReason(QIODevice &log);
