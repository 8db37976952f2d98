#pragma once

#include <QString>

class QProcess;

/// Gives `process` a whole command-line tail as it stands. Where a process takes a list of
/// arguments instead, the text is split as its reader on Windows would: at blanks outside double
/// quotes.
void setArgumentText(QProcess &process, const QString &text);

/// The command-line tail of this process: on Windows as it stands, elsewhere made of its arguments.
[[nodiscard]] QString ownArgumentText();
