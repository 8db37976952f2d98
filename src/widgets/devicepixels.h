#pragma once

#include <QPainter>

/// Device pixels per pixel of what `painter` draws on, before it has transformed anything. The
/// widget's own ratio is that of its screen, which is another one when it is drawn into a picture.
[[nodiscard]] inline double pixelRatio(const QPainter &painter)
{
    return painter.deviceTransform().m11();
}

/// The device pixels that a rectangle covers, for a picture of them that looks exactly like what is
/// painted in its place, wherever between two of them the rectangle begins.
struct DevicePixels
{
    QRect place; ///< on what is painted on
    QTransform transform; ///< from the rectangle's coordinates to those of a picture of that size
};

/// What `rect` covers with the present transformation of `painter`, which may move and scale.
[[nodiscard]] DevicePixels devicePixels(const QPainter &painter, const QRect &rect);

/// The device pixels nearest to `rect`, each edge rounded by itself, so that what lies side by side
/// has neither a gap nor a pixel in common.
[[nodiscard]] QRect nearestDevicePixels(const QPainter &painter, const QRect &rect);

/// Draws `picture`, one pixel of it for each device pixel, with its top left at `corner`.
void drawDevicePixels(QPainter &painter, const QPoint &corner, const QPixmap &picture);
