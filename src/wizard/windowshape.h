#pragma once

#include <QRegion>

class QPainter;

/// The window's size and outer corners, in pixels. The title bar rounds the upper two corners, the
/// footer the lower two.
inline constexpr QSize kWindowSize(680, 474);
inline constexpr int kCornerRadius = 11;

/// Fills a bar with its colour, its two corners at `outer` rounded as the window's are, and draws a
/// hairline along the opposite edge, towards the middle of the window.
void paintBar(QPainter &painter, const QRect &bar, Qt::Edge outer);

/// The window without what lies outside its corners.
[[nodiscard]] QRegion windowShape();
