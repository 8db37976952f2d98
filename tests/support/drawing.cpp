#include "support/drawing.h"

#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

/// Passes everything on to a picture but the texts, which it writes down.
class TextCollector : public QPaintEngine
{
public:
    explicit TextCollector(Drawing &drawing, double ratio)
        : QPaintEngine(AllFeatures), m_drawing(drawing), m_ratio(ratio)
    {}

    bool begin(QPaintDevice *) override { return m_painter.begin(&m_drawing.picture); }
    bool end() override { return m_painter.end(); }
    [[nodiscard]] Type type() const override { return User; }

    void updateState(const QPaintEngineState &current) override;
    void drawPath(const QPainterPath &path) override;
    void drawPolygon(const QPointF *points, int count, PolygonDrawMode mode) override;
    void drawPixmap(const QRectF &target, const QPixmap &pixmap, const QRectF &source) override;
    void drawImage(const QRectF &target, const QImage &image, const QRectF &source,
                   Qt::ImageConversionFlags flags) override;
    void drawTiledPixmap(const QRectF &target, const QPixmap &pixmap,
                         const QPointF &offset) override;
    void drawTextItem(const QPointF &baseline, const QTextItem &item) override;

private:
    void updateClip(const QPaintEngineState &current);
    void applyClip();

    Drawing &m_drawing;
    double m_ratio;
    QPainter m_painter;
    QTransform m_transform;
    bool m_isClipped = false;
    QPainterPath m_clip; ///< in device pixels, like the clip that the widgets' places make
};

void TextCollector::updateState(const QPaintEngineState &current)
{
    m_transform = current.transform();
    m_painter.setTransform(m_transform);
    m_painter.setPen(current.pen());
    m_painter.setBrush(current.brush());
    m_painter.setBrushOrigin(current.brushOrigin());
    m_painter.setBackground(current.backgroundBrush());
    m_painter.setBackgroundMode(current.backgroundMode());
    m_painter.setOpacity(current.opacity());
    m_painter.setCompositionMode(current.compositionMode());
    m_painter.setRenderHints(m_painter.renderHints(), false);
    m_painter.setRenderHints(current.renderHints());
    updateClip(current);
}

void TextCollector::updateClip(const QPaintEngineState &current)
{
    QPainterPath clip;
    if (current.state() & DirtyClipPath)
        clip = m_transform.map(current.clipPath());
    else if (current.state() & DirtyClipRegion)
        clip.addRegion(m_transform.map(current.clipRegion()));
    else if (current.state() & DirtyClipEnabled && !current.isClipEnabled())
        m_isClipped = false;
    if (!(current.state() & (DirtyClipPath | DirtyClipRegion)))
        return;
    const Qt::ClipOperation operation = current.clipOperation();
    m_clip = operation == Qt::IntersectClip && m_isClipped ? m_clip.intersected(clip) : clip;
    m_isClipped = operation != Qt::NoClip;
}

void TextCollector::applyClip()
{
    m_painter.resetTransform();
    m_painter.setClipping(false);
    if (const QRegion region = systemClip(); !region.isEmpty())
        m_painter.setClipRegion(region);
    if (m_isClipped)
        m_painter.setClipPath(m_clip, Qt::IntersectClip);
    m_painter.setTransform(m_transform);
}

void TextCollector::drawPath(const QPainterPath &path)
{
    applyClip();
    m_painter.drawPath(path);
}

void TextCollector::drawPolygon(const QPointF *points, int count, PolygonDrawMode mode)
{
    applyClip();
    if (mode == PolylineMode)
        m_painter.drawPolyline(points, count);
    else
        m_painter.drawPolygon(points, count,
                              mode == WindingMode ? Qt::WindingFill : Qt::OddEvenFill);
}

void TextCollector::drawPixmap(const QRectF &target, const QPixmap &pixmap, const QRectF &source)
{
    applyClip();
    m_painter.drawPixmap(target, pixmap, source);
}

void TextCollector::drawImage(const QRectF &target, const QImage &image, const QRectF &source,
                              Qt::ImageConversionFlags flags)
{
    applyClip();
    m_painter.drawImage(target, image, source, flags);
}

void TextCollector::drawTiledPixmap(const QRectF &target, const QPixmap &pixmap,
                                    const QPointF &offset)
{
    applyClip();
    m_painter.drawTiledPixmap(target, pixmap, offset);
}

void TextCollector::drawTextItem(const QPointF &baseline, const QTextItem &item)
{
    const QPointF place = m_transform.map(baseline) / m_ratio;
    const QRegion region = systemClip();
    if (region.isEmpty() || region.contains(m_transform.map(baseline).toPoint()))
        m_drawing.texts.append({ item.text(), place, item.font(), m_painter.pen().color() });
}

/// As large as a widget, with a pixel ratio of its own.
class TextlessDevice : public QPaintDevice
{
public:
    TextlessDevice(Drawing &drawing, double ratio)
        : m_drawing(drawing), m_ratio(ratio), m_collector(drawing, ratio)
    {}

    [[nodiscard]] QPaintEngine *paintEngine() const override { return &m_collector; }

protected:
    [[nodiscard]] int metric(PaintDeviceMetric metric) const override;

private:
    Drawing &m_drawing;
    double m_ratio;
    mutable TextCollector m_collector;
};

int TextlessDevice::metric(PaintDeviceMetric metric) const
{
    switch (metric) {
    case PdmDevicePixelRatio:
        return int(m_ratio);
    case PdmDevicePixelRatioScaled:
        return int(m_ratio * devicePixelRatioFScale());
    case PdmWidth:
        return m_drawing.picture.width();
    case PdmHeight:
        return m_drawing.picture.height();
    default:
        return m_drawing.picture.logicalDpiX(); // resolutions; nothing else is asked for
    }
}

/// Part of an area, or all of it; see join().
struct Patch
{
    Area area;
    int pixels;
    qsizetype first; ///< the patch that has become of it, if that is another one
};

/// Pixels of one colour side by side in a line.
struct Run
{
    int left;
    int right; ///< the first that is not in it
    qsizetype patch;
};

bool isSameColour(const Area &a, const Area &b)
{
    return a.light == b.light && a.dark == b.dark;
}

/// Makes one patch of two that touch, that of the topmost pixel; returns which one.
qsizetype join(QList<Patch> &patches, qsizetype a, qsizetype b)
{
    while (patches[a].first != a)
        a = patches[a].first;
    while (patches[b].first != b)
        b = patches[b].first;
    if (a == b)
        return a;
    const auto [first, other] = std::minmax(a, b);
    patches[first].area.bounds |= patches[other].area.bounds;
    patches[first].pixels += patches[other].pixels;
    patches[other].first = first;
    return first;
}

} // namespace

Drawing draw(QWidget &widget, double ratio)
{
    Drawing drawing {
        QImage((QSizeF(widget.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied), {}
    };
    drawing.picture.fill(Qt::transparent);
    TextlessDevice device(drawing, ratio);
    widget.render(&device, {}, {}, QWidget::DrawChildren);
    return drawing;
}

QList<Area> areas(const QImage &light, const QImage &dark, int fewest)
{
    const QImage pictures[] = { light.convertToFormat(QImage::Format_ARGB32),
                                dark.convertToFormat(QImage::Format_ARGB32) };
    QList<Patch> patches;
    QList<Run> above;
    for (int y = 0; y < light.height(); ++y) {
        const auto *lightLine = reinterpret_cast<const QRgb *>(pictures[0].constScanLine(y));
        const auto *darkLine = reinterpret_cast<const QRgb *>(pictures[1].constScanLine(y));
        QList<Run> runs;
        qsizetype next = 0; // of the runs above that may touch
        for (int left = 0, right = 0; left < light.width(); left = right) {
            const QRgb colours[] = { lightLine[left], darkLine[left] };
            while (right < light.width() && lightLine[right] == colours[0]
                   && darkLine[right] == colours[1])
                ++right;
            const Area area { QRect(left, y, right - left, 1), colours[0], colours[1] };
            qsizetype patch = patches.size();
            patches.append({ area, right - left, patch });
            while (next < above.size() && above[next].right <= left)
                ++next;
            for (qsizetype i = next; i < above.size() && above[i].left < right; ++i) {
                if (isSameColour(patches[above[i].patch].area, area))
                    patch = join(patches, patch, above[i].patch);
            }
            runs.append({ left, right, patch });
        }
        above = runs;
    }
    QList<Area> found;
    for (qsizetype i = 0; i < patches.size(); ++i) {
        const Patch &patch = patches[i];
        const bool isEmpty = qAlpha(patch.area.light) == 0 && qAlpha(patch.area.dark) == 0;
        if (patch.first == i && !isEmpty && patch.pixels >= fewest)
            found.append(patch.area);
    }
    return found;
}
