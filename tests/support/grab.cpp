#include "support/grab.h"

#include <cmath>

namespace {

constexpr int kRoundingError = 2; // of 255

bool alike(const QColor &a, const QColor &b)
{
    const auto near = [](int x, int y) { return std::abs(x - y) <= kRoundingError; };
    return near(a.red(), b.red()) && near(a.green(), b.green()) && near(a.blue(), b.blue())
        && near(a.alpha(), b.alpha());
}

} // namespace

QImage grabWidget(QWidget &widget, double ratio)
{
    QImage picture((QSizeF(widget.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    widget.render(&picture, {}, {}, QWidget::DrawChildren);
    return picture;
}

QColor colourAt(const QImage &picture, const QPointF &point)
{
    const QPointF place = point * picture.devicePixelRatio();
    return picture.pixelColor(int(place.x()), int(place.y()));
}

bool hasHairline(const QImage &picture, Qt::Edge edge, const QColor &colour)
{
    const int thickness = int(picture.devicePixelRatio());
    QRect line = picture.rect();
    QPoint inwards;
    switch (edge) {
    case Qt::TopEdge:
        line.setHeight(thickness);
        inwards = { 0, thickness };
        break;
    case Qt::BottomEdge:
        line.setTop(line.bottom() + 1 - thickness);
        inwards = { 0, -1 };
        break;
    case Qt::LeftEdge:
        line.setWidth(thickness);
        inwards = { thickness, 0 };
        break;
    case Qt::RightEdge:
        line.setLeft(line.right() + 1 - thickness);
        inwards = { -1, 0 };
        break;
    }
    return pixelsUnlike(picture.copy(line), colour) == 0
        && !alike(picture.pixelColor(line.topLeft() + inwards), colour);
}

int pixelsUnlike(const QImage &picture, const QColor &background)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            count += alike(picture.pixelColor(x, y), background) ? 0 : 1;
    }
    return count;
}
