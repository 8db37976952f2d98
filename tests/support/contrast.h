#pragma once

#include <QColor>

/// Relative luminance, 0 to 1, as WCAG 2.2 defines it:
/// https://www.w3.org/TR/WCAG22/#dfn-relative-luminance
[[nodiscard]] double luminance(const QColor &colour);

/// Contrast ratio, 1 to 21, from the same place:
/// https://www.w3.org/TR/WCAG22/#dfn-contrast-ratio
[[nodiscard]] double contrast(const QColor &a, const QColor &b);
