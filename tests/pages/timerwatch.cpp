#include "pages/timerwatch.h"

#include <QCoreApplication>
#include <QTimer>
#include <QTimerEvent>

TimerWatch::TimerWatch()
{
    QCoreApplication::instance()->installEventFilter(this);
}

QTimer *TimerWatch::repeating(int interval) const
{
    for (const QPointer<QTimer> &timer : m_repeating) {
        if (timer && timer->interval() == interval)
            return timer;
    }
    return nullptr;
}

void TimerWatch::fire(QTimer *timer, int times)
{
    for (int i = 0; i < times && timer->isActive(); ++i) {
        QTimerEvent event(timer->timerId());
        QCoreApplication::sendEvent(timer, &event);
    }
}

bool TimerWatch::eventFilter(QObject *watched, QEvent *event)
{
    auto *timer = event->type() == QEvent::Timer ? qobject_cast<QTimer *>(watched) : nullptr;
    if (timer && timer->isSingleShot())
        m_shots.append(timer->interval());
    else if (timer && !m_repeating.contains(timer))
        m_repeating.prepend(timer);
    return false;
}
