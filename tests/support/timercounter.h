#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

/// Counts the timers of all kinds that fire in this program.
class TimerCounter : public QObject
{
public:
    TimerCounter() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Timer)
            ++fired;
        return false;
    }

    int fired = 0;
};
