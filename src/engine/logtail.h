#pragma once

#include <QString>

/// Follows the growing log of a setup engine for the name of the file being written. A poll reads
/// at most what was appended since the last one, because it searches for the newest name from the
/// end.
class LogTail
{
public:
    LogTail() = default;
    /// Follows the log at `path` from its first byte; an empty path is no log at all.
    explicit LogTail(const QString &path);

    /// The last file name that the part of the log since the previous call holds; empty if it holds
    /// none, or if there is no regular file to read. A line that a call finds half written is taken
    /// as it stands, and its rest as a line of its own.
    [[nodiscard]] QString readNewestFile();

private:
    QString m_path;
    qint64 m_position = 0; ///< byte offset up to which the log has been read
};
