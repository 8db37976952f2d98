#pragma once

#include <QRegion>

/// The window's size and outer corners, in pixels. The title bar rounds the upper two corners, the
/// footer the lower two.
inline constexpr QSize kWindowSize(680, 474);
inline constexpr int kCornerRadius = 11;

/// The window without what lies outside its corners.
[[nodiscard]] QRegion windowShape();
