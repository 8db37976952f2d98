#pragma once

#include <QColor>
#include <QRect>

class QPainter;

/// Draws a line of 1 px along the inside of one edge of `rect`. Its thickness is rounded down to
/// whole device pixels and it touches the edge, so that at fractional pixel ratios too all lines of
/// a window are equally thick.
void paintHairline(QPainter &painter, const QRect &rect, Qt::Edge edge, const QColor &colour);
