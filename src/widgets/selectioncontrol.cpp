#include "widgets/selectioncontrol.h"

#include "theme/themed.h"
#include "widgets/animation.h"

#include <QEnterEvent>
#include <QPainter>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kHoverDuration = 150; // ms
constexpr double kPlateRadius = 8.0;
constexpr int kIndicatorLeft = 9;
constexpr int kIndicatorSize = 16;
constexpr int kTextLeft = kIndicatorLeft + kIndicatorSize + 10;
constexpr int kTextMargins = kTextLeft + 9;
constexpr int kWidthBesideText = 53;

} // namespace

SelectionControl::SelectionControl(const QString &text, int verticalRoom, QWidget *parent)
    : QAbstractButton(parent), m_verticalRoom(verticalRoom), m_hoverAnimation(this, "hoverProgress")
{
    setText(text);
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    m_hoverAnimation.setDuration(kHoverDuration);
    repaintOnThemeChange(this);
}

void SelectionControl::followCheckedState(QPropertyAnimation &selection)
{
    connect(this, &QAbstractButton::toggled, &selection,
            [&selection](bool checked) { glideTo(selection, checked ? 1.0 : 0.0); });
}

void SelectionControl::setHoverProgress(double progress)
{
    m_hoverProgress = progress;
    update();
}

QSize SelectionControl::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return { metrics.horizontalAdvance(text()) + kWidthBesideText,
             qMax(metrics.height(), kIndicatorSize) + m_verticalRoom };
}

void SelectionControl::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    if (m_hoverProgress > kInvisible) {
        QColor plate = themedColor(u"@INS_PANEL"_s);
        plate.setAlphaF(float(m_hoverProgress));
        painter.setPen(Qt::NoPen);
        painter.setBrush(plate);
        painter.drawRoundedRect(rect(), kPlateRadius, kPlateRadius);
    }

    paintIndicator(
        painter,
        QRectF(kIndicatorLeft, (height() - kIndicatorSize) / 2.0, kIndicatorSize, kIndicatorSize));

    painter.setPen(themedColor(u"@INS_TX"_s));
    painter.setFont(font());
    painter.drawText(QRect(kTextLeft, 0, width() - kTextMargins, height()),
                     Qt::AlignLeft | Qt::AlignVCenter, text());

    m_focusRing.paint(painter, rect(), kPlateRadius, u"@INS_ACCENT"_s);
}

void SelectionControl::enterEvent(QEnterEvent *event)
{
    glideTo(m_hoverAnimation, 1.0);
    QAbstractButton::enterEvent(event);
}

void SelectionControl::leaveEvent(QEvent *event)
{
    glideTo(m_hoverAnimation, 0.0);
    QAbstractButton::leaveEvent(event);
}
