#include "widgets/focusring.h"

#include "theme/themed.h"

#include <QFocusEvent>
#include <QPainter>

namespace {

constexpr double kRingWidth = 1.5;

} // namespace

void FocusRing::update(const QFocusEvent &event)
{
    switch (event.reason()) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        m_visible = event.gotFocus();
        break;
    case Qt::ActiveWindowFocusReason:
    case Qt::PopupFocusReason:
        break; // the window went or came back: the ring is where it was
    default:
        m_visible = false;
    }
}

void FocusRing::paint(QPainter &painter, const QRectF &rect, double radius,
                      const QString &token) const
{
    if (!m_visible)
        return;
    constexpr double kInset = kRingWidth / 2;
    painter.setPen(QPen(themedColor(token), kRingWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(kInset, kInset, -kInset, -kInset), radius, radius);
}
