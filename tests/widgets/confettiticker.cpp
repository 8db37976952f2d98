#include "widgets/confettiticker.h"

#include "widgets/confettioverlay.h"

#include <QCoreApplication>
#include <QTimer>
#include <QTimerEvent>

ConfettiTicker::ConfettiTicker(ConfettiOverlay &overlay) : m_timer(overlay.findChild<QTimer *>())
{
    Q_ASSERT(m_timer);
    m_timer->installEventFilter(this);
}

void ConfettiTicker::tick(int times)
{
    m_ticking = true;
    for (int i = 0; i < times && m_timer->isActive(); ++i) {
        QTimerEvent event(m_timer->timerId());
        QCoreApplication::sendEvent(m_timer, &event);
    }
    m_ticking = false;
}

bool ConfettiTicker::eventFilter(QObject *, QEvent *event)
{
    return event->type() == QEvent::Timer && !m_ticking;
}
