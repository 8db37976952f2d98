#include "widgets/togglecheckbox.h"

#include "theme/themed.h"
#include "widgets/animation.h"

#include <QPainter>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kCheckDuration = 180; // ms
constexpr int kVerticalRoom = 16;
constexpr double kBorderWidth = 1.5;
constexpr double kBoxRadius = 4.0;
constexpr double kTickWidth = 2.0;
constexpr QPointF kTick[] = { { 4.0, 8.2 }, { 6.7, 11.2 }, { 12.0, 4.8 } };

/// The tick is opaque before the animation ends; at its end it would look late.
constexpr double kTickSpeed = 1.4;

} // namespace

ToggleCheckbox::ToggleCheckbox(const QString &text, QWidget *parent)
    : SelectionControl(text, kVerticalRoom, parent), m_checkAnimation(this, "checkProgress")
{
    m_checkAnimation.setDuration(kCheckDuration);
    m_checkAnimation.setEasingCurve(QEasingCurve::OutCubic);
    followCheckedState(m_checkAnimation);
}

void ToggleCheckbox::setCheckProgress(double progress)
{
    m_checkProgress = progress;
    update();
}

void ToggleCheckbox::paintIndicator(QPainter &painter, const QRectF &box)
{
    const bool checked = m_checkProgress > kInvisible;
    const QColor accent = themedColor(u"@INS_ACCENT"_s);
    painter.setPen(QPen(checked ? accent : themedColor(u"@INS_LINE2"_s), kBorderWidth));
    painter.setBrush(checked ? accent : themedColor(u"@INS_BG"_s));
    painter.drawRoundedRect(box, kBoxRadius, kBoxRadius);
    if (!checked)
        return;

    painter.save();
    painter.setOpacity(std::clamp(kTickSpeed * m_checkProgress, 0.0, 1.0));
    painter.translate(box.topLeft());
    painter.setPen(QPen(Qt::white, kTickWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(kTick, int(std::size(kTick)));
    painter.restore();
}
