#include "wizard/windowshape.h"

#include <QPainterPath>

QRegion windowShape()
{
    QPainterPath shape;
    shape.addRoundedRect(QRect({}, kWindowSize), kCornerRadius, kCornerRadius);
    return QRegion(shape.toFillPolygon().toPolygon());
}
