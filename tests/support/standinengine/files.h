#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Something on disk that could not be made. It ends the run.
struct FileError
{
    enum ExitCode { PreparingFailed = 3, CancelledDuringSetup = 5 };

    QString text; ///< A sentence for a message box.
    ExitCode exitCode = CancelledDuringSetup;
};

/// Throws "Setup was unable to <do something with> "<path>": <reason>."
[[noreturn]] void failOn(const QString &action, const QString &path, const QString &reason);

/// Nothing if the file is not there or cannot be read.
[[nodiscard]] std::optional<QByteArray> readFile(const QString &file);

/// Creates or overwrites in place. Throws FileError.
void writeFile(const QString &file, const QByteArray &content);

/// Copies over what is there. Throws FileError.
void copyFile(const QString &from, const QString &to);

void makeExecutable(const QString &file);

/// Failure is silent: used for what tests read, never for what is installed.
void appendLine(const QString &file, const QByteArray &line);
