#pragma once

#include <QPainter>

/// Device pixels per pixel of what `painter` draws on, before it has transformed anything. The
/// widget's own ratio is that of its screen, which is another one when it is drawn into a picture.
[[nodiscard]] inline double pixelRatio(const QPainter &painter)
{
    return painter.deviceTransform().m11();
}
