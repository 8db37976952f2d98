#pragma once

#include <QColor>
#include <QList>
#include <QPointF>
#include <QSizeF>

class ConfettiOverlay;

/// A piece of confetti as the overlay paints it.
struct PaintedPiece
{
    QPointF centre; ///< in the overlay's pixels
    QSizeF size;
    double rotation = 0.0; ///< radians, from -pi to pi
    double opacity = 0.0;
    QColor colour;
};

/// The pieces that `overlay` paints now, in the order in which it paints them, also those outside
/// of it. They are what it asks of the painter, to the last digit, and not pixels of a picture.
[[nodiscard]] QList<PaintedPiece> paintedPieces(ConfettiOverlay &overlay);
