#pragma once

#include <QColor>
#include <QRect>

class QPainter;

/// Fills `line`, one pixel thick, with whole device pixels: as many as the pixel ratio has wholes,
/// so that all lines of a window are equally thick at fractional ratios too.
void paintHairline(QPainter &painter, const QRect &line, const QColor &colour);
