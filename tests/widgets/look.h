#pragma once

#include <QColor>
#include <QImage>
#include <QList>
#include <QRectF>
#include <QString>

/// Empty if the two colours are alike in every channel to within `tolerance` (of 255), else what is
/// different about them, for a test to print.
[[nodiscard]] QString difference(const QColor &actual, const QColor &expected, int tolerance = 2);

/// The same of two pictures of one size, of the first pixel that is not alike.
[[nodiscard]] QString difference(const QImage &actual, const QImage &expected, int tolerance = 2);

/// The same of the colours at some places of `picture` (in pixels, whatever its ratio), which
/// should all be `expected`.
[[nodiscard]] QString differenceAt(const QImage &picture, const QList<QPointF> &places,
                                   const QColor &expected, int tolerance = 2);

/// What `top` at `opacity` looks like on `bottom`.
[[nodiscard]] QColor blended(const QColor &top, double opacity, const QColor &bottom);

/// `colour` at `opacity` on nothing.
[[nodiscard]] QColor faded(QColor colour, double opacity);

/// How much of `picture` is painted, in square pixels (not device pixels): the sum of all alphas.
[[nodiscard]] double paintedArea(const QImage &picture);

/// The smallest rectangle, in pixels, around everything of at least half opacity whose colour is
/// like `colour`, or around everything of at least half opacity if none is given.
[[nodiscard]] QRectF inkRect(const QImage &picture, const QColor &colour = {});
