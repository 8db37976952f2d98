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

int pixelsUnlike(const QImage &picture, const QColor &background)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            count += alike(picture.pixelColor(x, y), background) ? 0 : 1;
    }
    return count;
}
