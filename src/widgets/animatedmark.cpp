#include "widgets/animatedmark.h"

#include "system/machine.h"
#include "widgets/animation.h"
#include "widgets/pixelratio.h"

#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <chrono>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr QSizeF kViewBox(735, 540);

constexpr double kGhostOpacity = 0.13;
/// From this level on the mark counts as full and is drawn without a clip.
constexpr double kFull = 0.999;

constexpr auto kDriftDuration = 2600ms;
constexpr double kDriftHeight = -4.0; // px

/// How one part comes in. At progress a it stands (1 - a) times its offset away from its place and
/// is (1 - a) times its shrinking smaller, about the middle of the mark.
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

/// The smallest rectangle that holds all of `picture` that is not transparent.
QRect visibleRect(const QImage &picture)
{
    QRect visible;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qAlpha(picture.pixel(x, y)) > 0)
                visible |= QRect(x, y, 1, 1);
        }
    }
    return visible;
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
        m_entranceDelays[i].setSingleShot(true);
        m_entranceDelays[i].setTimerType(Qt::PreciseTimer);
        m_entranceDelays[i].setInterval(entrance.delay);
        connect(&m_entranceDelays[i], &QTimer::timeout, this,
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
        setEntrance(i, prefersReducedMotion() ? 1.0 : 0.0);
    if (prefersReducedMotion())
        return;
    for (QTimer &delay : m_entranceDelays)
        delay.start();
}

void AnimatedMark::setFill(double level)
{
    m_fill = std::clamp(level, 0.0, 1.0);
    update();
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
    m_driftOffset = offset;
    update();
}

QRectF AnimatedMark::targetRect() const
{
    QRectF target({}, kViewBox.scaled(size(), Qt::KeepAspectRatio));
    target.moveCenter(QRectF(rect()).center());
    return target;
}

void AnimatedMark::rasterize(double ratio)
{
    m_rasterRatio = ratio;
    const QSize size = (QSizeF(this->size()) * m_rasterRatio).toSize();
    for (size_t i = 0; i < kParts; ++i) {
        QImage picture(size, QImage::Format_ARGB32_Premultiplied);
        picture.setDevicePixelRatio(m_rasterRatio);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        QSvgRenderer(entrances()[i].picture).render(&painter, targetRect());
        painter.end();
        // Every frame of an animation pays for each pixel of the pictures, the empty ones too.
        const QRect visible = visibleRect(picture);
        QImage part = picture.copy(visible);
        part.setDevicePixelRatio(1.0);
        m_pictures[i] = { QPixmap::fromImage(part), QPointF(visible.topLeft()) / m_rasterRatio };
    }
}

void AnimatedMark::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (const double ratio = pixelRatio(painter); m_rasterRatio != ratio)
        rasterize(ratio);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.translate(0.0, m_driftOffset);
    if (m_fill >= kFull) {
        // The colour lies on the ghost everywhere, so both go down in one.
        paintParts(painter, kGhostOpacity, 1.0);
        return;
    }
    paintParts(painter, kGhostOpacity, 0.0);
    QRectF filled = targetRect();
    filled.setTop(filled.bottom() - m_fill * filled.height());
    painter.setClipRect(filled);
    paintParts(painter, 0.0, 1.0);
}

void AnimatedMark::paintParts(QPainter &painter, double ghost, double colour) const
{
    const QPointF centre = targetRect().center();
    for (size_t i = 0; i < kParts; ++i) {
        const double a = m_entrance[i];
        if (a <= kInvisible)
            continue;
        const Entrance &entrance = entrances()[i];
        const double scale = 1.0 - (1.0 - a) * entrance.shrinking;
        painter.save();
        const double presence = qMin(a, 1.0);
        painter.setOpacity(1.0 - (1.0 - ghost * presence) * (1.0 - colour * presence));
        painter.translate((1.0 - a) * entrance.offset + centre);
        painter.scale(scale, scale);
        painter.translate(m_pictures[i].topLeft - centre);
        painter.scale(1.0 / m_rasterRatio, 1.0 / m_rasterRatio);
        if (m_driftOffset != 0.0) {
            // A picture that is only translated is put on whole pixels, which is fast, and good
            // enough for what comes flying in; but the mark would float in jerks.
            constexpr double kNotOnlyTranslated = 1.0 + 1e-9;
            painter.scale(kNotOnlyTranslated, kNotOnlyTranslated);
        }
        painter.drawPixmap(QPointF(), m_pictures[i].pixmap);
        painter.restore();
    }
}

void AnimatedMark::resizeEvent(QResizeEvent *)
{
    m_rasterRatio = 0.0;
}
