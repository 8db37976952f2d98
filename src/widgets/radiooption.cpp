#include "widgets/radiooption.h"

#include "theme/themed.h"
#include "widgets/animation.h"

#include <QPainter>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kSelectDuration = 160; // ms
constexpr int kVerticalRoom = 14;
constexpr double kRingWidth = 1.5;
constexpr double kDotRadius = 4.0;

} // namespace

RadioOption::RadioOption(const QString &text, QWidget *parent)
    : SelectionControl(text, kVerticalRoom, parent), m_selectAnimation(this, "selectProgress")
{
    // In a QButtonGroup this only gives it the role of a radio button for assistive technology.
    setAutoExclusive(true);
    m_selectAnimation.setDuration(kSelectDuration);
    m_selectAnimation.setEasingCurve(QEasingCurve::OutCubic);
    followCheckedState(m_selectAnimation);
}

void RadioOption::setSelectProgress(double progress)
{
    m_selectProgress = progress;
    update();
}

void RadioOption::paintIndicator(QPainter &painter, const QRectF &box)
{
    const bool selected = m_selectProgress > kInvisible;
    const QColor accent = themedColor(u"@INS_ACCENT"_s);
    painter.setPen(QPen(selected ? accent : themedColor(u"@INS_LINE2"_s), kRingWidth));
    painter.setBrush(themedColor(u"@INS_BG"_s));
    painter.drawEllipse(box);
    if (!selected)
        return;
    const double radius = kDotRadius * m_selectProgress;
    painter.setPen(Qt::NoPen);
    painter.setBrush(accent);
    painter.drawEllipse(box.center(), radius, radius);
}
