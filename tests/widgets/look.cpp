#include "widgets/look.h"

#include "support/grab.h"
#include "theme/themed.h"

#include <cmath>

QString difference(const QColor &actual, const QColor &expected, int tolerance)
{
    // The fainter a colour, the coarser its channels have been rounded in the picture.
    const int channelTolerance = tolerance * 255 / qMax(expected.alpha(), 1);
    const auto near = [](int a, int b, int error) { return std::abs(a - b) <= error; };
    const bool alike = near(actual.alpha(), expected.alpha(), tolerance)
        && near(actual.red(), expected.red(), channelTolerance)
        && near(actual.green(), expected.green(), channelTolerance)
        && near(actual.blue(), expected.blue(), channelTolerance);
    if (alike)
        return {};
    return QStringLiteral("is %1, should be %2")
        .arg(actual.name(QColor::HexArgb), expected.name(QColor::HexArgb));
}

QString difference(const QImage &actual, const QImage &expected, int tolerance)
{
    for (int y = 0; y < expected.height(); ++y) {
        for (int x = 0; x < expected.width(); ++x) {
            const QString unlike =
                difference(actual.pixelColor(x, y), expected.pixelColor(x, y), tolerance);
            if (!unlike.isEmpty())
                return QStringLiteral("at %1, %2: ").arg(x).arg(y) + unlike;
        }
    }
    return {};
}

QString differenceAt(const QImage &picture, const QList<QPointF> &places, const QColor &expected,
                     int tolerance)
{
    for (const QPointF &place : places) {
        const QString unlike = difference(colourAt(picture, place), expected, tolerance);
        if (!unlike.isEmpty())
            return QStringLiteral("at %1, %2: ").arg(place.x()).arg(place.y()) + unlike;
    }
    return {};
}

QColor blended(const QColor &top, double opacity, const QColor &bottom)
{
    const auto mix = [opacity](int a, int b) { return qRound(opacity * a + (1.0 - opacity) * b); };
    return { mix(top.red(), bottom.red()), mix(top.green(), bottom.green()),
             mix(top.blue(), bottom.blue()) };
}

QColor faded(QColor colour, double opacity)
{
    colour.setAlphaF(float(opacity));
    return colour;
}

double paintedArea(const QImage &picture)
{
    qint64 sum = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            sum += qAlpha(picture.pixel(x, y));
    }
    const double ratio = picture.devicePixelRatio();
    return double(sum) / 255.0 / (ratio * ratio);
}

QRectF inkRect(const QImage &picture, const QColor &colour)
{
    QRect ink;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qAlpha(picture.pixel(x, y)) < 128)
                continue;
            if (!colour.isValid() || difference(picture.pixelColor(x, y), colour, 40).isEmpty())
                ink |= QRect(x, y, 1, 1);
        }
    }
    const double ratio = picture.devicePixelRatio();
    return { QPointF(ink.topLeft()) / ratio, QSizeF(ink.size()) / ratio };
}
