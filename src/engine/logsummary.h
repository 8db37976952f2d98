#pragma once

#include <QString>

class QIODevice;

/// The line of a setup engine's log that best explains why the run failed; empty if the log holds
/// no line. In this order: the text of the last suppressed message box; the first line that speaks
/// of an exception, an error or a failure; the last line. Blank lines count for nothing.
///
/// Reads `log` once, from where it stands to where it ends now (a sequential device: to its end),
/// in constant memory; of a line beyond 64 KiB only the beginning is looked at.
[[nodiscard]] QString failureReason(QIODevice &log);
