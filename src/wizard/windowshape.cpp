#include "wizard/windowshape.h"

#include "theme/themed.h"
#include "widgets/devicepixels.h"
#include "widgets/hairline.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>

using namespace Qt::Literals::StringLiterals;

void paintBar(QPainter &painter, const QRect &bar, Qt::Edge outer)
{
    const bool isOnTop = outer == Qt::TopEdge;
    // A row of device pixels that is covered by half would let the desktop through.
    const QRectF whole =
        painter.deviceTransform().inverted().mapRect(QRectF(nearestDevicePixels(painter, bar)));
    QPainterPath shape;
    shape.setFillRule(Qt::WindingFill);
    shape.addRoundedRect(whole, kCornerRadius, kCornerRadius);
    shape.addRect(whole.adjusted(0, isOnTop ? kCornerRadius : 0, 0, isOnTop ? 0 : -kCornerRadius));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(shape, themedColor(u"@INS_PANEL"_s));
    paintHairline(painter, bar, isOnTop ? Qt::BottomEdge : Qt::TopEdge,
                  themedColor(u"@INS_LINE"_s));
}

QRegion windowShape()
{
    QImage window(kWindowSize, QImage::Format_ARGB32_Premultiplied);
    window.fill(Qt::transparent);
    QPainter painter(&window);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(window.rect(), kCornerRadius, kCornerRadius);
    painter.end();

    // What the corners cover in part would show black through the rest.
    QRegion shape;
    for (int y = 0; y < window.height(); ++y) {
        int inset = 0;
        while (qAlpha(window.pixel(inset, y)) < 255)
            ++inset;
        shape += QRect(inset, y, window.width() - 2 * inset, 1);
    }
    return shape;
}
