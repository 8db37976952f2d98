#pragma once

#include <QFile>

/// Opens `file` for reading if its name leads to a regular file; false otherwise. The files of a
/// run lie in a folder that others may write to: a directory, a FIFO or a device by their name
/// counts as "not there", so that a read can neither block nor go on for ever.
[[nodiscard]] bool openRegularFile(QFile &file);
