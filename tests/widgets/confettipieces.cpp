#include "widgets/confettipieces.h"

#include "widgets/confettioverlay.h"

#include <QPaintEngine>

#include <cmath>

namespace {

/// Paints nothing but writes down each rectangle.
class RectCollector : public QPaintEngine
{
public:
    explicit RectCollector(QList<PaintedPiece> &pieces)
        : QPaintEngine(AllFeatures), m_pieces(pieces)
    {}

    bool begin(QPaintDevice *) override { return true; }
    bool end() override { return true; }
    [[nodiscard]] Type type() const override { return User; }

    void updateState(const QPaintEngineState &current) override
    {
        m_transform = current.transform();
        m_opacity = current.opacity();
        m_brush = current.brush();
        m_hints = current.renderHints();
    }
    void drawRects(const QRectF *rects, int count) override
    {
        if (!(m_hints & QPainter::Antialiasing))
            qFatal("A piece is painted with jagged edges");
        for (int i = 0; i < count; ++i) {
            m_pieces.append({ m_transform.map(rects[i].center()), rects[i].size(),
                              std::atan2(m_transform.m12(), m_transform.m11()), m_opacity,
                              m_brush.color() });
        }
    }
    void drawPixmap(const QRectF &, const QPixmap &, const QRectF &) override
    {
        qFatal("A piece is no rectangle");
    }

private:
    QList<PaintedPiece> &m_pieces;
    QTransform m_transform;
    double m_opacity = 1.0;
    QBrush m_brush;
    QPainter::RenderHints m_hints;
};

/// As large as the overlay, one device pixel per pixel.
class Device : public QPaintDevice
{
public:
    Device(QSize size, QList<PaintedPiece> &pieces) : m_size(size), m_collector(pieces) {}

    [[nodiscard]] QPaintEngine *paintEngine() const override { return &m_collector; }

protected:
    [[nodiscard]] int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth:
            return m_size.width();
        case PdmHeight:
            return m_size.height();
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return int(devicePixelRatioFScale());
        default:
            return 96; // resolutions
        }
    }

private:
    QSize m_size;
    mutable RectCollector m_collector;
};

} // namespace

QList<PaintedPiece> paintedPieces(ConfettiOverlay &overlay)
{
    QList<PaintedPiece> pieces;
    Device device(overlay.size(), pieces);
    overlay.render(&device, {}, {}, QWidget::DrawChildren);
    return pieces;
}
