#pragma once

#include <QFont>
#include <QImage>
#include <QList>
#include <QWidget>

/// A run of characters in one font and colour, where a widget drew it.
struct DrawnText
{
    QString text;
    QPointF baseline; ///< where it starts, in the widget's pixels
    QFont font;
    QColor colour;
};

/// What a widget draws, taken apart. Letters look a little different on every machine; where they
/// stand and everything else does not.
struct Drawing
{
    QImage picture; ///< in device pixels, without any text
    QList<DrawnText> texts; ///< in the order in which they were drawn
};

/// Has `widget` draw itself and its children on nothing, at `ratio` device pixels per pixel.
[[nodiscard]] Drawing draw(QWidget &widget, double ratio);

/// One colour all over, edge to edge.
struct Area
{
    QRect bounds; ///< in device pixels
    QRgb light;
    QRgb dark;
};

/// The areas of two pictures of the same size, one for each theme, from top to bottom. Two points
/// are in one area if both pictures show the same there. Areas below `fewest` device pixels, which
/// are the softened edges of round shapes, and areas in which nothing was drawn are left out.
[[nodiscard]] QList<Area> areas(const QImage &light, const QImage &dark, int fewest);
