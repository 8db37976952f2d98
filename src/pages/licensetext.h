#pragma once

#include <QString>

/// The licence to be shown: the first text among "LICENSE.txt" in `programFolder` and in its parent
/// (UTF-8, trimmed), else a built-in notice. A file without text counts as missing, and so does
/// what is no regular file.
[[nodiscard]] QString licenseText(const QString &programFolder);
