#pragma once

#include <QColor>
#include <QRect>

class QPainter;

/// Fills `line`, one pixel in one direction, without blurring it at fractional pixel ratios.
void paintHairline(QPainter &painter, const QRect &line, const QColor &colour);
