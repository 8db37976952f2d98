#include "widgets/hairline.h"

#include "widgets/devicepixels.h"

#include <cmath>

void paintHairline(QPainter &painter, const QRect &line, const QColor &colour)
{
    const QTransform toDevice = painter.deviceTransform();
    const double thickness = qMax(std::floor(pixelRatio(painter)), 1.0);
    QRectF device = toDevice.mapRect(QRectF(line));
    if (line.height() < line.width()) {
        device.moveTop(std::round(device.top()));
        device.setHeight(thickness);
    } else {
        device.moveLeft(std::round(device.left()));
        device.setWidth(thickness);
    }
    const bool antialiased = painter.testRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(toDevice.inverted().mapRect(device), colour);
    painter.setRenderHint(QPainter::Antialiasing, antialiased);
}
