#include "widgets/gifbadge.h"

#include "system/machine.h"
#include "theme/themed.h"
#include "widgets/animation.h"
#include "widgets/pixelratio.h"

#include <QPainter>
#include <QPainterPath>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kPopDuration = 400; // ms
constexpr double kRingWidth = 1.0;

} // namespace

GifBadge::GifBadge(const QString &fileName, int side, QWidget *parent)
    : QWidget(parent),
      m_side(side),
      m_movie(fileName),
      m_onScreen(this),
      m_popAnimation(this, "popProgress")
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    m_popAnimation.setDuration(kPopDuration);
    m_popAnimation.setEasingCurve(QEasingCurve::OutBack);
    m_popAnimation.setStartValue(0.0);
    m_popAnimation.setEndValue(1.0);
    m_movie.setCacheMode(QMovie::CacheAll);
    connect(&m_movie, &QMovie::frameChanged, this, qOverload<>(&QWidget::update));
    repaintOnThemeChange(this);
    connect(&m_onScreen, &OnScreenWatcher::changed, this, [this] {
        if (m_movie.state() != QMovie::NotRunning)
            updatePlayback();
    });
}

void GifBadge::updatePlayback()
{
    m_movie.setPaused(!m_onScreen.isOnScreen() || prefersReducedMotion());
}

void GifBadge::setPopProgress(double progress)
{
    m_popProgress = progress;
    update();
}

void GifBadge::pop()
{
    playOnce(m_popAnimation);
}

void GifBadge::paintEvent(QPaintEvent *)
{
    if (m_popProgress <= kInvisible)
        return;
    // Nobody misses it before it is painted, and reading it is work that the program's start need
    // not wait for.
    if (m_movie.state() == QMovie::NotRunning) {
        m_movie.start();
        updatePlayback();
    }
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QRectF disc = rect();

    painter.save();
    painter.setOpacity(m_popProgress);
    painter.translate(disc.center());
    painter.scale(m_popProgress, m_popProgress);
    painter.translate(-disc.center());
    QPainterPath clip;
    clip.addEllipse(disc);
    painter.setClipPath(clip);
    painter.fillRect(disc, Qt::white);
    if (const QPixmap frame = scaledFrame(pixelRatio(painter)); !frame.isNull()) {
        // Multiplying lets a white picture background melt into the disc.
        painter.setCompositionMode(QPainter::CompositionMode_Multiply);
        const QSizeF size = frame.deviceIndependentSize();
        painter.drawPixmap(disc.center() - QPointF(size.width(), size.height()) / 2, frame);
    }
    painter.restore();

    constexpr double kInset = kRingWidth / 2;
    painter.setPen(QPen(themedColor(u"@INS_LINE"_s), kRingWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(disc.adjusted(kInset, kInset, -kInset, -kInset));
}

QPixmap GifBadge::scaledFrame(double ratio)
{
    if (std::exchange(m_frameRatio, ratio) != ratio)
        m_frames.clear();
    QPixmap &scaled = m_frames[m_movie.currentFrameNumber()];
    if (const QPixmap frame = m_movie.currentPixmap(); scaled.isNull() && !frame.isNull()) {
        scaled = frame.scaled(QSizeF(m_side * ratio, m_side * ratio).toSize(),
                              Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
        scaled.setDevicePixelRatio(ratio);
    }
    return scaled;
}
