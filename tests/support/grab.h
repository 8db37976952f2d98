#pragma once

#include <QImage>
#include <QWidget>

/// Renders `widget` alone into a picture at `ratio` device pixels per pixel, on nothing. The widget
/// need not be shown; its present size counts.
[[nodiscard]] QImage grabWidget(QWidget &widget, double ratio = 1.0);

/// The colour at `point` (in the widget's pixels, whatever the picture's ratio).
[[nodiscard]] QColor colourAt(const QImage &picture, const QPointF &point);

/// The ratios that Windows offers.
inline constexpr double kScreenRatios[] = { 1.0, 1.25, 1.5, 1.75, 2.0, 2.25, 2.5, 3.0 };

/// True if a line of `colour` runs along the whole of that edge of `picture`, with no device pixel
/// beyond it and as many of its own as the ratio has wholes.
[[nodiscard]] bool hasHairline(const QImage &picture, Qt::Edge edge, const QColor &colour);

/// How many device pixels of `picture` differ from `background` in any channel by more than a
/// rounding error.
[[nodiscard]] int pixelsUnlike(const QImage &picture, const QColor &background);
