#pragma once

#include <QString>

class QProcess;

/// Gives `process` a whole command-line tail as it stands. Where a process takes a list of
/// arguments instead, the text is split as its reader on Windows would: at blanks outside double
/// quotes.
void setArgumentText(QProcess &process, const QString &text);
