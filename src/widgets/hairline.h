#pragma once

#include <QColor>
#include <QRect>

class QPainter;

/// Draws a line along the inside of one edge of `rect`, of whole device pixels: as many as the
/// pixel ratio has wholes, so that all lines of a window are equally thick at fractional ratios
/// too, and with none between the line and the edge.
void paintHairline(QPainter &painter, const QRect &rect, Qt::Edge edge, const QColor &colour);
