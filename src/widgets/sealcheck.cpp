#include "widgets/sealcheck.h"

#include "theme/themed.h"
#include "widgets/animation.h"

#include <QPainter>
#include <QPainterPath>

#include <chrono>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int kCircleDuration = 400; // ms
constexpr int kCheckDuration = 380; // ms
constexpr auto kCheckDelay = 280ms;

/// The seal is designed in a box of this side.
constexpr double kDesignSize = 48.0;
constexpr double kDiscRadius = 22.0;
constexpr double kCheckWidth = 3.2;
constexpr QPointF kCheckMark[] = { { 15, 25 }, { 21, 31 }, { 34, 17 } };
constexpr int kCheckSteps = 24;

} // namespace

SealCheck::SealCheck(QWidget *parent)
    : QWidget(parent),
      m_circleAnimation(this, "circleProgress"),
      m_checkAnimation(this, "checkProgress"),
      m_checkDelay(this)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    for (QPropertyAnimation *animation : { &m_circleAnimation, &m_checkAnimation }) {
        animation->setStartValue(0.0);
        animation->setEndValue(1.0);
    }
    m_circleAnimation.setDuration(kCircleDuration);
    m_circleAnimation.setEasingCurve(QEasingCurve::OutBack);
    m_checkAnimation.setDuration(kCheckDuration);
    m_checkAnimation.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_checkDelay, &DelayedStart::due, this, [this] { playOnce(m_checkAnimation); });
    repaintOnThemeChange(this);
}

void SealCheck::setCircleProgress(double progress)
{
    m_circleProgress = progress;
    update();
}

void SealCheck::setCheckProgress(double progress)
{
    m_checkProgress = progress;
    update();
}

void SealCheck::play()
{
    playOnce(m_circleAnimation);
    m_checkAnimation.stop();
    setCheckProgress(0.0);
    m_checkDelay.start(kCheckDelay);
}

void SealCheck::paintEvent(QPaintEvent *)
{
    if (m_circleProgress <= kInvisible)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double sx = width() / kDesignSize;
    const double sy = height() / kDesignSize;
    const double s = qMin(sx, sy);
    const QPointF centre(kDesignSize / 2 * sx, kDesignSize / 2 * sy);

    painter.save();
    painter.setOpacity(m_circleProgress);
    painter.translate(centre);
    painter.scale(m_circleProgress, m_circleProgress);
    painter.translate(-centre);
    painter.setPen(Qt::NoPen);
    painter.setBrush(themedColor(u"@INS_SEAL_BG"_s));
    painter.drawEllipse(centre, kDiscRadius * s, kDiscRadius * s);
    painter.restore();

    if (m_checkProgress <= kInvisible)
        return;
    QPainterPath mark;
    mark.moveTo(kCheckMark[0].x() * sx, kCheckMark[0].y() * sy);
    for (const QPointF &point : { kCheckMark[1], kCheckMark[2] })
        mark.lineTo(point.x() * sx, point.y() * sy);

    // Even steps along the mark's length, so that it grows at an even speed.
    QPainterPath drawn(mark.pointAtPercent(0.0));
    for (int i = 1; i <= kCheckSteps; ++i) {
        const double percent = double(i) / kCheckSteps * m_checkProgress;
        if (percent > 1.0)
            break;
        drawn.lineTo(mark.pointAtPercent(percent));
    }
    painter.strokePath(drawn,
                       QPen(themedColor(u"@INS_OK"_s), kCheckWidth * s, Qt::SolidLine, Qt::RoundCap,
                            Qt::RoundJoin));
}
