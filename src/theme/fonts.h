#pragma once

#include <QFont>

/// The fonts that the program brings along; the running text is in the desktop's own.

/// The monospaced font of paths, versions and figures.
[[nodiscard]] QFont monospacedFont(int pixelSize);
/// The display font of headlines.
[[nodiscard]] QFont displayFont(int pixelSize, QFont::Weight weight);
