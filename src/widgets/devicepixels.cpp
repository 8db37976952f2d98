#include "widgets/devicepixels.h"

DevicePixels devicePixels(const QPainter &painter, const QRect &rect)
{
    const QTransform toDevice = painter.deviceTransform();
    const QRect place = toDevice.mapRect(QRectF(rect)).toAlignedRect();
    return { place, toDevice * QTransform::fromTranslate(-place.x(), -place.y()) };
}

QRect nearestDevicePixels(const QPainter &painter, const QRect &rect)
{
    const QRectF exact = painter.deviceTransform().mapRect(QRectF(rect));
    return { QPoint(qRound(exact.left()), qRound(exact.top())),
             QPoint(qRound(exact.right()) - 1, qRound(exact.bottom()) - 1) };
}

void drawDevicePixels(QPainter &painter, const QPoint &corner, const QPixmap &picture)
{
    const QTransform before = painter.transform();
    painter.setTransform(painter.deviceTransform().inverted(), true);
    painter.drawPixmap(corner, picture);
    painter.setTransform(before);
}
