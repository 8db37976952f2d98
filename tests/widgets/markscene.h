#pragma once

#include <QImage>
#include <QRectF>

#include <array>

inline constexpr QSize kUsualMark(136, 110);

/// A moment of the animated mark, which is to be seen in full and at rest unless it says otherwise.
struct MarkScene
{
    std::array<double, 4> entrance { 1.0, 1.0, 1.0, 1.0 };
    double fill = 1.0;
    double drift = 0.0;
    QSize size = kUsualMark;
    double ratio = 1.0;
};

/// Where the 735 x 540 drawing lies in a mark of that size.
[[nodiscard]] QRectF targetOf(const QSize &size);

/// A place of the drawing in a mark of that size, at rest.
[[nodiscard]] QPointF placeOf(double x, double y, const QSize &size = kUsualMark);

/// What the widget paints.
[[nodiscard]] QImage pictureOf(const MarkScene &scene);

/// What it should paint: the scene drawn from the vector drawings, in every pixel anew.
[[nodiscard]] QImage drawingOf(const MarkScene &scene);
