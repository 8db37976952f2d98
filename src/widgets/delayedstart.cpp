#include "widgets/delayedstart.h"

#include "widgets/animation.h"

#include <QWidget>

DelayedStart::DelayedStart(QWidget *widget)
    : QObject(widget), m_widget(widget), m_timer(this), m_onScreen(widget, this)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &DelayedStart::due);
    connect(&m_onScreen, &OnScreenWatcher::changed, this, &DelayedStart::onScreenChanged);
}

void DelayedStart::start(std::chrono::milliseconds delay)
{
    if (showsMotion(m_widget)) {
        m_timer.start(delay);
        return;
    }
    m_timer.stop();
    Q_EMIT due();
}

void DelayedStart::stop()
{
    m_timer.stop();
}

void DelayedStart::onScreenChanged(bool onScreen)
{
    if (onScreen || !m_timer.isActive())
        return;
    m_timer.stop();
    Q_EMIT due();
}
