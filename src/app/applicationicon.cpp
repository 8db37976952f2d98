#include "app/applicationicon.h"

#include <QPainter>
#include <QSvgRenderer>

using namespace Qt::Literals::StringLiterals;

QIcon applicationIcon()
{
    QSvgRenderer renderer(u":/assets/icons/varnel-logo.svg"_s);
    if (!renderer.isValid())
        return {};
    QIcon icon;
    for (int side : { 16, 20, 24, 32, 40, 48, 64, 128, 256 }) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        QRectF target(pixmap.rect());
        if (const QSizeF size = renderer.defaultSize(); !size.isEmpty()) {
            const QSizeF fitted = size.scaled(target.size(), Qt::KeepAspectRatio);
            target =
                QRectF(QPointF((side - fitted.width()) / 2, (side - fitted.height()) / 2), fitted);
        }
        renderer.render(&painter, target);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}
