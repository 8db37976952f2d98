#pragma once

/// The window's outer corners, in pixels. The title bar rounds the upper two, the footer the lower
/// two.
inline constexpr int kCornerRadius = 11;
