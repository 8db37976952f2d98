#include "wizard/keyguard.h"

#include <QCoreApplication>
#include <QKeyEvent>

#include <chrono>

using namespace std::chrono_literals;

namespace {

constexpr auto kDuration = 500ms;

bool answers(const QKeyEvent &event)
{
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
    case Qt::Key_Select:
    case Qt::Key_Escape:
        return true;
    default:
        return false;
    }
}

} // namespace

KeyGuard::KeyGuard(QObject *parent) : QObject(parent)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(kDuration);
    connect(&m_timer, &QTimer::timeout, this,
            [this] { QCoreApplication::instance()->removeEventFilter(this); });
}

void KeyGuard::start()
{
    // Of the application, wherever the focus is. Without its press a release makes no click.
    QCoreApplication::instance()->installEventFilter(this);
    m_timer.start();
}

bool KeyGuard::eventFilter(QObject *, QEvent *event)
{
    return event->type() == QEvent::KeyPress && answers(*static_cast<QKeyEvent *>(event));
}
