#pragma once

#include <QString>

/// True for the root of a drive (`X:`, `X:\`, `X:/`) and for the file system's root (`/`). Judged
/// by the text alone, so that a Windows path is judged alike on every system.
[[nodiscard]] bool isDriveRoot(QStringView path);

/// `path` cleaned, with the product's folder appended if it is a drive root: nothing is ever
/// installed straight into the root of a drive. The result has forward slashes, except that a path
/// without a drive keeps its back-slashes where these are letters like any other.
[[nodiscard]] QString installFolder(const QString &path);
