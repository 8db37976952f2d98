#include "widgets/hairline.h"

#include "widgets/devicepixels.h"

void paintHairline(QPainter &painter, const QRect &rect, Qt::Edge edge, const QColor &colour)
{
    const int thickness = qMax(int(pixelRatio(painter)), 1);
    QRect line = nearestDevicePixels(painter, rect);
    switch (edge) {
    case Qt::TopEdge:
        line.setHeight(thickness);
        break;
    case Qt::BottomEdge:
        line.setTop(line.bottom() + 1 - thickness);
        break;
    case Qt::LeftEdge:
        line.setWidth(thickness);
        break;
    case Qt::RightEdge:
        line.setLeft(line.right() + 1 - thickness);
        break;
    }
    const bool antialiased = painter.testRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(painter.deviceTransform().inverted().mapRect(QRectF(line)), colour);
    painter.setRenderHint(QPainter::Antialiasing, antialiased);
}
