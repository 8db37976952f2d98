#pragma once

#include <QFile>

// The files of a run lie in a folder that others may write to. A directory, a FIFO or a device by
// their name counts as "not there", so that a read can neither block nor go on for ever; and so
// does a symbolic link, so that nothing is shown or kept of a file that only the wizard may read.

/// Whether a regular file has that name.
[[nodiscard]] bool isRegularFile(const QString &path);

/// Opens `file` for reading if a regular file has its name; false otherwise.
[[nodiscard]] bool openRegularFile(QFile &file);
