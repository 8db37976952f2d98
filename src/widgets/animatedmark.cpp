#include "widgets/animatedmark.h"

#include "widgets/animation.h"
#include "widgets/devicepixels.h"

#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <chrono>
#include <iterator>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr QSizeF kViewBox(735, 540);

constexpr double kGhostOpacity = 0.13;
/// From this level on the mark is drawn full, without a clip.
constexpr double kFull = 0.999;

constexpr auto kDriftDuration = 2600ms;
constexpr double kDriftHeight = -4.0; // px

/// How a part comes in. At progress a it is (1 - a) * offset away from its place and scaled by
/// 1 - (1 - a) * shrinking about the middle of the mark.
struct Entrance
{
    const char *property;
    QString picture;
    std::chrono::milliseconds delay;
    std::chrono::milliseconds duration;
    QEasingCurve::Type easing;
    double overshoot;
    QPointF offset; // px
    double shrinking;
};

const std::array<Entrance, 4> &entrances()
{
    // clang-format off
    static const std::array<Entrance, 4> table { {
        { "a1Progress", u":/mark/left.svg"_s,     80ms,  580ms, QEasingCurve::OutCubic, 0.0, { -90, 0 }, 0.0 },
        { "a2Progress", u":/mark/right.svg"_s,    200ms, 580ms, QEasingCurve::OutCubic, 0.0, { 90, 0 },  0.0 },
        { "a3Progress", u":/mark/centre.svg"_s,   440ms, 500ms, QEasingCurve::OutBack,  1.4, { 0, 26 },  0.45 },
        { "a4Progress", u":/mark/triangle.svg"_s, 620ms, 460ms, QEasingCurve::OutBack,  2.8, { 0, 0 },   0.7 },
    } };
    // clang-format on
    return table;
}

/// The bounding rectangle of all pixels of `picture` that are not transparent.
QRect visibleRect(const QImage &picture)
{
    QRect visible;
    const auto isVisible = [](QRgb pixel) { return qAlpha(pixel) > 0; };
    for (int y = 0; y < picture.height(); ++y) {
        const auto *begin = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        const auto *end = begin + picture.width();
        const auto *first = std::find_if(begin, end, isVisible);
        if (first == end)
            continue;
        const auto last =
            std::find_if(std::reverse_iterator(end), std::reverse_iterator(first), isVisible);
        visible |= QRect(QPoint(int(first - begin), y), QPoint(int(last.base() - begin) - 1, y));
    }
    return visible;
}

/// Opacity of a layer of `upper` on one of `lower`.
double layered(double lower, double upper)
{
    return 1.0 - (1.0 - lower) * (1.0 - upper);
}

} // namespace

AnimatedMark::AnimatedMark(QWidget *parent) : QWidget(parent), m_onScreen(this)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    for (size_t i = 0; i < kParts; ++i) {
        const Entrance &entrance = entrances()[i];
        QEasingCurve easing(entrance.easing);
        easing.setOvershoot(entrance.overshoot);
        QPropertyAnimation &animation = m_entranceAnimations[i];
        animation.setTargetObject(this);
        animation.setPropertyName(entrance.property);
        animation.setStartValue(0.0);
        animation.setEndValue(1.0);
        animation.setDuration(int(entrance.duration.count()));
        animation.setEasingCurve(easing);
        m_entranceDelays[i] = std::make_unique<DelayedStart>(this);
        connect(m_entranceDelays[i].get(), &DelayedStart::due, this,
                [&animation] { playOnce(animation); });
    }
    connect(&m_onScreen, &OnScreenWatcher::changed, this, &AnimatedMark::updateDrift);
    m_driftAnimation.setTargetObject(this);
    m_driftAnimation.setPropertyName("driftOffset");
    m_driftAnimation.setDuration(int(kDriftDuration.count()));
    m_driftAnimation.setLoopCount(-1);
    m_driftAnimation.setEasingCurve(QEasingCurve::InOutSine);
    m_driftAnimation.setKeyValueAt(0.0, 0.0);
    m_driftAnimation.setKeyValueAt(0.5, kDriftHeight);
    m_driftAnimation.setKeyValueAt(1.0, 0.0);
}

void AnimatedMark::replay()
{
    for (QPropertyAnimation &animation : m_entranceAnimations)
        animation.stop();
    for (size_t i = 0; i < kParts; ++i)
        setEntrance(i, 0.0);
    for (size_t i = 0; i < kParts; ++i)
        m_entranceDelays[i]->start(entrances()[i].delay);
}

void AnimatedMark::setFill(double level)
{
    m_fill = std::clamp(level, 0.0, 1.0);
    updatePicture();
}

void AnimatedMark::startIdle()
{
    m_idle = true;
    updateDrift();
}

void AnimatedMark::stopIdle()
{
    m_idle = false;
    m_driftAnimation.stop();
    setDriftOffset(0.0);
}

void AnimatedMark::updateDrift()
{
    if (m_idle && m_onScreen.isOnScreen() && !prefersReducedMotion()) {
        if (m_driftAnimation.state() == QAbstractAnimation::Paused)
            m_driftAnimation.resume();
        else if (m_driftAnimation.state() == QAbstractAnimation::Stopped)
            m_driftAnimation.start();
    } else if (m_driftAnimation.state() == QAbstractAnimation::Running) {
        m_driftAnimation.pause();
    }
}

void AnimatedMark::setEntrance(size_t part, double progress)
{
    m_entrance[part] = progress;
    update();
}

void AnimatedMark::setDriftOffset(double offset)
{
    const int before = driftSteps();
    m_driftOffset = offset;
    // Most frames move the mark by less than a step, which would look the same: do not repaint.
    if (driftSteps() != before)
        updatePicture();
}

void AnimatedMark::updatePicture()
{
    // Only parts that are still coming in are painted in the margins.
    update(isAssembled() ? contentsRect() : rect());
}

bool AnimatedMark::isAssembled() const
{
    return m_entrance == std::array { 1.0, 1.0, 1.0, 1.0 };
}

int AnimatedMark::driftSteps() const
{
    return qRound(m_driftOffset * m_rasterRatio * kStepsPerPixel);
}

QRectF AnimatedMark::targetRect() const
{
    const QRectF place = contentsRect();
    QRectF target({}, kViewBox.scaled(place.size(), Qt::KeepAspectRatio));
    target.moveCenter(place.center());
    return target;
}

AnimatedMark::Picture AnimatedMark::rasterized(size_t first, size_t count, double down) const
{
    const QRect place = contentsRect();
    const QSize size = (QSizeF(place.size()) * m_rasterRatio).toSize();
    QImage picture(size + QSize(0, 1), QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(m_rasterRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QPointF(0.0, down / m_rasterRatio) - place.topLeft());
    for (size_t i = first; i < first + count; ++i)
        QSvgRenderer(entrances()[i].picture).render(&painter, targetRect());
    painter.end();
    // Drawing a transparent pixel takes as long as any other, so cut the picture to what is
    // visible. Leave one transparent pixel on each side: it gives a scaled picture smooth edges
    // without antialiasing, which would take twice as long.
    const QRect visible = visibleRect(picture).adjusted(-1, -1, 1, 1);
    QImage cut = picture.copy(visible);
    cut.setDevicePixelRatio(1.0);
    return { QPixmap::fromImage(cut),
             place.topLeft() + QPointF(visible.topLeft()) / m_rasterRatio };
}

void AnimatedMark::rasterizeFor(double ratio)
{
    if (m_rasterRatio == ratio)
        return;
    m_rasterRatio = ratio;
    m_wholes.fill({});
    m_parts.fill({});
}

void AnimatedMark::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    rasterizeFor(pixelRatio(painter));
    if (m_fill >= kFull) {
        // The colour covers the whole ghost, so both are painted in one pass.
        paintMark(painter, kGhostOpacity, 1.0);
        return;
    }
    paintMark(painter, kGhostOpacity, 0.0);
    QRectF filled = targetRect();
    filled.setTop(filled.bottom() - m_fill * filled.height());
    painter.setClipRect(filled.translated(0.0, m_driftOffset));
    paintMark(painter, 0.0, 1.0);
}

void AnimatedMark::paintMark(QPainter &painter, double ghost, double colour)
{
    if (!isAssembled()) {
        paintParts(painter, ghost, colour);
        return;
    }
    // The mark floats by less than a pixel at a time. One picture for each step is sharper than one
    // that is interpolated between pixels, and much faster to draw.
    const int steps = driftSteps();
    const int step = steps & (kStepsPerPixel - 1);
    Picture &whole = m_wholes[size_t(step)];
    if (whole.pixmap.isNull())
        whole = rasterized(0, kParts, double(step) / kStepsPerPixel);
    painter.save();
    painter.setOpacity(layered(ghost, colour));
    painter.translate(0.0, double(steps - step) / kStepsPerPixel / m_rasterRatio);
    paintPicture(painter, whole);
    painter.restore();
}

void AnimatedMark::paintParts(QPainter &painter, double ghost, double colour)
{
    const QPointF centre = targetRect().center() + QPointF(0.0, m_driftOffset);
    for (size_t i = 0; i < kParts; ++i) {
        const double a = m_entrance[i];
        if (a <= kInvisible)
            continue;
        const Entrance &entrance = entrances()[i];
        if (m_parts[i].pixmap.isNull())
            m_parts[i] = rasterized(i, 1, 0.0);
        const double scale = 1.0 - (1.0 - a) * entrance.shrinking;
        const double presence = qMin(a, 1.0);
        painter.save();
        painter.setOpacity(layered(ghost * presence, colour * presence));
        painter.translate((1.0 - a) * entrance.offset + centre);
        painter.scale(scale, scale);
        painter.translate(-targetRect().center());
        paintPicture(painter, m_parts[i]);
        painter.restore();
    }
}

void AnimatedMark::paintPicture(QPainter &painter, const Picture &picture) const
{
    painter.translate(picture.topLeft);
    painter.scale(1.0 / m_rasterRatio, 1.0 / m_rasterRatio);
    // A picture that is only moved lies on whole pixels: smoothing would change nothing and take
    // three times as long.
    painter.setRenderHint(QPainter::SmoothPixmapTransform,
                          painter.deviceTransform().type() > QTransform::TxTranslate);
    painter.drawPixmap(QPointF(), picture.pixmap);
}

void AnimatedMark::resizeEvent(QResizeEvent *)
{
    m_rasterRatio = 0.0;
}
