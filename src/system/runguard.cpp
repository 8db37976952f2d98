#include "system/runguard.h"

#include "system/desktop.h"

#include <QGuiApplication>
#include <QSessionManager>

namespace {

Desktop *currentDesktop = nullptr;

Desktop &desktopOrNone()
{
    static Desktop none;
    return currentDesktop ? *currentDesktop : none;
}

} // namespace

void setDesktop(Desktop *desktop)
{
    currentDesktop = desktop;
}

RunGuard::RunGuard(QWindow &window, const QString &reason)
    : m_window(window), m_desktop(desktopOrNone())
{
    // Called directly: the answer is asked for when the signal returns.
    m_session = connect(
        qGuiApp, &QGuiApplication::commitDataRequest, this,
        [](QSessionManager &session) { session.cancel(); }, Qt::DirectConnection);
    m_desktop.setBlockReason(m_window, reason);
    m_desktop.keepAwake(true);
    m_desktop.showOnTaskBar(m_window, Desktop::Button::Waiting, 0.0);
}

RunGuard::~RunGuard()
{
    release();
    m_desktop.showOnTaskBar(m_window, Desktop::Button::Plain, 0.0);
}

void RunGuard::setProgress(double fraction)
{
    m_desktop.showOnTaskBar(m_window, Desktop::Button::Progress, fraction);
}

void RunGuard::fail()
{
    release();
    m_desktop.showOnTaskBar(m_window, Desktop::Button::Failure, 1.0);
}

void RunGuard::release()
{
    if (!disconnect(m_session))
        return;
    m_desktop.setBlockReason(m_window, QString());
    m_desktop.keepAwake(false);
}
