#include "widgets/progresstrack.h"

#include "theme/themed.h"
#include "widgets/animation.h"

#include <QAccessible>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kGlideDuration = 300; // ms
constexpr int kSweepDuration = 1100; // ms
constexpr double kSegment = 0.38; // of the width

} // namespace

ProgressTrack::ProgressTrack(QWidget *parent)
    : QWidget(parent),
      m_valueAnimation(this, "value"),
      m_phaseAnimation(this, "indeterminatePhase"),
      m_onScreen(this)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    m_valueAnimation.setDuration(kGlideDuration);
    m_phaseAnimation.setDuration(kSweepDuration);
    m_phaseAnimation.setStartValue(0.0);
    m_phaseAnimation.setEndValue(1.0);
    m_phaseAnimation.setLoopCount(-1);
    connect(&m_onScreen, &OnScreenWatcher::changed, this, &ProgressTrack::updateSweep);
    repaintOnThemeChange(this);
}

void ProgressTrack::setValue(double value)
{
    m_value = std::clamp(value, 0.0, 1.0);
    update();
}

void ProgressTrack::setIndeterminatePhase(double phase)
{
    m_phase = phase;
    update();
}

void ProgressTrack::setTarget(double fraction)
{
    m_target = std::clamp(fraction, 0.0, 1.0);
    glideTo(m_valueAnimation, m_target);
    announceTarget();
}

void ProgressTrack::settle()
{
    m_valueAnimation.stop();
    setValue(m_target);
}

void ProgressTrack::reset()
{
    m_valueAnimation.stop();
    setValue(0.0);
    if (std::exchange(m_target, 0.0) > 0.0)
        announceTarget();
}

void ProgressTrack::announceTarget()
{
    QAccessibleValueChangeEvent event(this, m_target * 100.0);
    QAccessible::updateAccessibility(&event);
}

void ProgressTrack::setIndeterminate(bool indeterminate)
{
    if (m_indeterminate == indeterminate)
        return;
    m_indeterminate = indeterminate;
    updateSweep();
    update();
}

void ProgressTrack::updateSweep()
{
    if (m_indeterminate && m_onScreen.isOnScreen())
        m_phaseAnimation.start();
    else
        m_phaseAnimation.stop();
}

void ProgressTrack::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double w = width();
    const double h = height();
    QPainterPath track;
    track.addRoundedRect(QRectF(0.0, 0.0, w, h), h / 2, h / 2);
    painter.fillPath(track, themedColor(u"@INS_LINE"_s));

    painter.setClipPath(track);
    const QColor fill = themedColor(u"@INS_ACCENT"_s);
    if (m_indeterminate) {
        // Over one phase the segment enters wholly from the left and leaves wholly on the right.
        const double segment = kSegment * w;
        painter.fillRect(QRectF((w + 2 * segment) * m_phase - segment, 0.0, segment, h), fill);
    } else if (m_value > 0.0) {
        painter.fillRect(QRectF(0.0, 0.0, m_value * w, h), fill);
    }
}
