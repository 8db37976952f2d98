#pragma once

#include <QPainter>

/// Device pixel ratio of what `painter` draws on; to be asked before the painter is transformed.
/// The ratio of the widget is that of its screen, even if it is being rendered into a picture.
[[nodiscard]] inline double pixelRatio(const QPainter &painter)
{
    return painter.deviceTransform().m11();
}

/// The device pixels that a rectangle covers, also in part. A picture of this size that is painted
/// with `transform` and drawn at `place` looks exactly like painting directly.
struct DevicePixels
{
    QRect place; ///< in the coordinates of the paint device
    QTransform transform; ///< from the painter's coordinates to those of the picture
};

/// What `rect` covers in the present coordinates of `painter`, which may be moved and scaled.
[[nodiscard]] DevicePixels devicePixels(const QPainter &painter, const QRect &rect);

/// `rect` in whole device pixels, each edge rounded on its own, so that neighbouring rectangles
/// neither overlap nor leave a gap.
[[nodiscard]] QRect nearestDevicePixels(const QPainter &painter, const QRect &rect);

/// Draws `picture`, one pixel of it for each device pixel, with its top left at `corner`.
void drawDevicePixels(QPainter &painter, const QPoint &corner, const QPixmap &picture);
