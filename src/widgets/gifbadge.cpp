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
            pauseOutOfSight();
    });
}

void GifBadge::pauseOutOfSight()
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
        pauseOutOfSight();
    }
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QRectF area = rect();

    painter.save();
    painter.setOpacity(m_popProgress);
    painter.translate(area.center());
    painter.scale(m_popProgress, m_popProgress);
    painter.translate(-area.center());
    painter.drawPixmap(area.topLeft(), disc(pixelRatio(painter)));
    painter.restore();

    constexpr double kInset = kRingWidth / 2;
    painter.setPen(QPen(themedColor(u"@INS_LINE"_s), kRingWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(area.adjusted(kInset, kInset, -kInset, -kInset));
}

QPixmap GifBadge::disc(double ratio)
{
    if (std::exchange(m_discRatio, ratio) != ratio)
        m_discs.clear();
    QPixmap &disc = m_discs[m_movie.currentFrameNumber()];
    if (!disc.isNull())
        return disc;

    const QSize pixels = (QSizeF(size()) * ratio).toSize();
    disc = QPixmap(pixels);
    disc.fill(Qt::transparent);
    QPainter painter(&disc);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath clip;
    clip.addEllipse(disc.rect());
    painter.setClipPath(clip);
    painter.fillRect(disc.rect(), Qt::white);
    if (const QPixmap frame = m_movie.currentPixmap(); !frame.isNull()) {
        const QPixmap scaled =
            frame.scaled(pixels, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
        // Multiplying lets a white picture background melt into the disc.
        painter.setCompositionMode(QPainter::CompositionMode_Multiply);
        painter.drawPixmap(
            QPointF(pixels.width() - scaled.width(), pixels.height() - scaled.height()) / 2,
            scaled);
    }
    painter.end();
    disc.setDevicePixelRatio(ratio);
    return disc;
}
