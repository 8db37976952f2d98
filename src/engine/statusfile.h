#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

/// What the setup engine last said of its run. The engine rewrites its status file whole and at any
/// moment, so any part may be missing: an empty text or no fraction means "nothing new".
struct StatusFile
{
    std::optional<double> fraction; ///< 0 to 1
    QString file;
    QString status;
};

/// Reads the ini text of a status file (UTF-8, any section, keys `progress` in percent, `file` and
/// `status`). Lines that do not parse are skipped; a later line of the same key wins.
[[nodiscard]] StatusFile parseStatusFile(QByteArrayView text);
