#include "widgets/gifbadge.h"

#include "theme/themed.h"
#include "widgets/animation.h"
#include "widgets/devicepixels.h"

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
    connect(&m_movie, &QMovie::frameChanged, this, &GifBadge::showFrame);
    repaintOnThemeChange(this);
    connect(&m_onScreen, &OnScreenWatcher::changed, this, [this] {
        if (m_movie.state() != QMovie::NotRunning)
            updatePlayback();
    });
}

void GifBadge::showFrame(int number)
{
    // A movie that repeats its only frame is a still picture and need not run.
    if (std::exchange(m_shownFrame, number) == number)
        m_movie.stop();
    else
        update();
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
    // The movie is read when it is first painted, so that the program's start does not wait for it.
    // Start it only once: a movie that cannot play, or has ended, would cause the next repaint each
    // time.
    if (!std::exchange(m_wasStarted, true)) {
        m_movie.start();
        updatePlayback();
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_popProgress == 1.0)
        paintAtRest(painter);
    else
        paintPopping(painter);

    constexpr double kInset = kRingWidth / 2;
    painter.setPen(QPen(themedColor(u"@INS_LINE"_s), kRingWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(QRectF(rect()).adjusted(kInset, kInset, -kInset, -kInset));
}

void GifBadge::paintPopping(QPainter &painter)
{
    const double ratio = pixelRatio(painter);
    const QPointF centre = QRectF(rect()).center();
    QPainterPath disc;
    disc.addEllipse(rect());
    painter.save();
    painter.setOpacity(m_popProgress);
    painter.translate(centre);
    painter.scale(m_popProgress, m_popProgress);
    painter.translate(-centre);
    painter.setClipPath(disc);
    paintPicture(painter, ratio);
    painter.restore();
}

void GifBadge::paintAtRest(QPainter &painter)
{
    const DevicePixels pixels = devicePixels(painter, rect());
    if (m_discSize != pixels.place.size() || m_discTransform != pixels.transform) {
        m_discSize = pixels.place.size();
        m_discTransform = pixels.transform;
        m_discs.clear();
    }
    QPixmap &disc = m_discs[m_movie.currentFrameNumber()];
    if (disc.isNull())
        disc = discAtRest(pixelRatio(painter));
    drawDevicePixels(painter, pixels.place.topLeft(), disc);
}

QPixmap GifBadge::discAtRest(double ratio)
{
    QPixmap picture(m_discSize);
    picture.fill(Qt::white);
    QPainter picturePainter(&picture);
    picturePainter.setTransform(m_discTransform);
    paintPicture(picturePainter, ratio);
    picturePainter.end();

    // Cut white and frame out together: two layers with a smooth edge each make a rough one.
    QBrush brush(picture);
    brush.setTransform(m_discTransform.inverted());
    QPixmap disc(m_discSize);
    disc.fill(Qt::transparent);
    QPainter discPainter(&disc);
    discPainter.setRenderHint(QPainter::Antialiasing);
    discPainter.setTransform(m_discTransform);
    discPainter.setPen(Qt::NoPen);
    discPainter.setBrush(brush);
    discPainter.drawEllipse(rect());
    discPainter.end();
    return disc;
}

void GifBadge::paintPicture(QPainter &painter, double ratio)
{
    const QRectF square = rect();
    painter.fillRect(square.adjusted(-1, -1, 1, 1),
                     Qt::white); // so that its edges are not smoothed
    const QPixmap frame = scaledFrame(ratio);
    if (frame.isNull())
        return;
    const QSizeF size = frame.deviceIndependentSize();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    // Multiplying makes a white background of the picture disappear in the disc.
    painter.setCompositionMode(QPainter::CompositionMode_Multiply);
    painter.drawPixmap(square.center() - QPointF(size.width(), size.height()) / 2, frame);
}

QPixmap GifBadge::scaledFrame(double ratio)
{
    const QPixmap frame = m_movie.currentPixmap();
    if (frame.isNull())
        return {};
    if (std::exchange(m_scaledFrom, frame.cacheKey()) != frame.cacheKey()
        || m_scaled.devicePixelRatio() != ratio) {
        m_scaled = frame.scaled((QSizeF(m_side, m_side) * ratio).toSize(),
                                Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
        m_scaled.setDevicePixelRatio(ratio);
    }
    return m_scaled;
}
