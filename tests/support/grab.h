#pragma once

#include <QImage>
#include <QWidget>

/// Renders `widget` alone into a picture at `ratio` device pixels per pixel, on nothing. The widget
/// need not be shown; its present size counts.
[[nodiscard]] QImage grabWidget(QWidget &widget, double ratio = 1.0);

/// The colour at `point` (in the widget's pixels, whatever the picture's ratio).
[[nodiscard]] QColor colourAt(const QImage &picture, const QPointF &point);

/// How many device pixels of `picture` differ from `background` in any channel by more than a
/// rounding error.
[[nodiscard]] int pixelsUnlike(const QImage &picture, const QColor &background);
