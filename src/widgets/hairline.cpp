#include "widgets/hairline.h"

#include <QPainter>

void paintHairline(QPainter &painter, const QRect &line, const QColor &colour)
{
    const bool antialiased = painter.testRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(line, colour);
    painter.setRenderHint(QPainter::Antialiasing, antialiased);
}
