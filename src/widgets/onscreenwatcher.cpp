#include "widgets/onscreenwatcher.h"

#include <QEvent>
#include <QWidget>

bool isOutOfSight(const QWidget *widget)
{
    const QWidget *window = widget->window();
    const bool wasShown = window->windowHandle() != nullptr;
    return window->isMinimized() || (wasShown && !window->isVisible());
}

OnScreenWatcher::OnScreenWatcher(QWidget *widget, QObject *parent)
    : QObject(parent ? parent : widget), m_widget(widget)
{
    widget->installEventFilter(this);
    update(widget->isVisible());
}

bool OnScreenWatcher::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Show:
    case QEvent::Hide:
        if (watched == m_widget)
            update(event->type() == QEvent::Show);
        break;
    case QEvent::WindowStateChange:
        if (m_widget && watched == m_window)
            update(m_widget->isVisible());
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void OnScreenWatcher::update(bool shown)
{
    if (shown && m_window != m_widget->window()) {
        if (m_window && m_window != m_widget)
            m_window->removeEventFilter(this);
        m_window = m_widget->window();
        m_window->installEventFilter(this);
    }
    const bool onScreen = shown && !m_window->isMinimized();
    if (m_onScreen == onScreen)
        return;
    m_onScreen = onScreen;
    Q_EMIT changed(onScreen);
}
