#include "widgets/focusring.h"

#include "theme/themed.h"

#include <QFocusEvent>
#include <QPainter>

namespace {

constexpr double kRingWidth = 1.5;

} // namespace

FocusRing::FocusRing(QWidget *control) : m_control(control)
{
    control->installEventFilter(this);
}

void FocusRing::paint(QPainter &painter, const QRectF &rect, double radius,
                      const QString &token) const
{
    // While its window is inactive, a control may lose the focus without an event.
    if (!m_byKeyboard || !m_control->hasFocus())
        return;
    constexpr double kInset = kRingWidth / 2;
    painter.setPen(QPen(themedColor(token), kRingWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(kInset, kInset, -kInset, -kInset), radius, radius);
}

bool FocusRing::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        update(*static_cast<QFocusEvent *>(event));
        m_control->update();
    }
    return QObject::eventFilter(watched, event);
}

void FocusRing::update(const QFocusEvent &event)
{
    switch (event.reason()) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        m_byKeyboard = event.gotFocus();
        break;
    case Qt::ActiveWindowFocusReason:
    case Qt::PopupFocusReason:
        break; // the control had the focus before the window was left, and gets it back
    default:
        m_byKeyboard = false;
    }
}
