#pragma once

#include <QString>
#include <QStringList>

/// Whether the program or library `path` runs or is loaded by a program that runs. Only Windows can
/// tell, which does not let such a file be written; false elsewhere, and if there is no such file.
[[nodiscard]] bool isProgramInUse(const QString &path);

/// Whether one of the programs and libraries in `folder` or below is in use, apart from
/// the files `except`.
[[nodiscard]] bool hasProgramsInUse(const QString &folder, const QStringList &except);
