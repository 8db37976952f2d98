#include "widgets/markscene.h"

#include "support/grab.h"
#include "widgets/animatedmark.h"

#include <QPainter>
#include <QSvgRenderer>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSizeF kViewBox(735, 540);

void drawParts(QPainter &painter, const MarkScene &scene, double opacity)
{
    const QRectF target = targetOf(scene.size);
    const QPointF centre = target.center();
    const std::array<QString, 4> files { u"left"_s, u"right"_s, u"centre"_s, u"triangle"_s };
    for (size_t i = 0; i < 4; ++i) {
        const double a = scene.entrance[i];
        if (a <= 0.001)
            continue;
        painter.save();
        painter.setOpacity(opacity * qMin(a, 1.0));
        if (i == 0)
            painter.translate((1.0 - a) * -90.0, 0.0);
        else if (i == 1)
            painter.translate((1.0 - a) * 90.0, 0.0);
        else if (i == 2)
            painter.translate(0.0, (1.0 - a) * 26.0);
        const double scale = i == 2 ? 0.55 + 0.45 * a : i == 3 ? 0.3 + 0.7 * a : 1.0;
        painter.translate(centre);
        painter.scale(scale, scale);
        painter.translate(-centre);
        QSvgRenderer(u":/mark/%1.svg"_s.arg(files[i])).render(&painter, target);
        painter.restore();
    }
}

} // namespace

QRectF targetOf(const QSize &size)
{
    const double scale = qMin(size.width() / kViewBox.width(), size.height() / kViewBox.height());
    QRectF target(QPointF(), kViewBox * scale);
    target.moveCenter(QPointF(size.width(), size.height()) / 2.0);
    return target;
}

QPointF placeOf(double x, double y, const QSize &size)
{
    const QRectF target = targetOf(size);
    return target.topLeft() + QPointF(x, y) * target.width() / kViewBox.width();
}

QImage pictureOf(const MarkScene &scene)
{
    AnimatedMark mark;
    mark.resize(scene.size);
    mark.setA1Progress(scene.entrance[0]);
    mark.setA2Progress(scene.entrance[1]);
    mark.setA3Progress(scene.entrance[2]);
    mark.setA4Progress(scene.entrance[3]);
    mark.setFill(scene.fill);
    mark.setDriftOffset(scene.drift);
    return grabWidget(mark, scene.ratio);
}

QImage drawingOf(const MarkScene &scene)
{
    QImage drawing((QSizeF(scene.size) * scene.ratio).toSize(),
                   QImage::Format_ARGB32_Premultiplied);
    drawing.setDevicePixelRatio(scene.ratio);
    drawing.fill(Qt::transparent);
    QPainter painter(&drawing);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(0.0, scene.drift);
    drawParts(painter, scene, 0.13);
    if (scene.fill < 0.999) {
        QRectF filled = targetOf(scene.size);
        filled.setTop(filled.bottom() - scene.fill * filled.height());
        painter.setClipRect(filled);
    }
    drawParts(painter, scene, 1.0);
    return drawing;
}
