#include "wizard/sessionend.h"

#include <QGuiApplication>
#include <QSessionManager>

namespace {

bool isCancelled = false;

} // namespace

// The program gets this one instead of the library's, which does nothing off screen.
void QSessionManager::cancel()
{
    isCancelled = true;
}

std::optional<bool> sessionMayEnd()
{
    auto *session = qGuiApp->findChild<QSessionManager *>();
    if (!session)
        qFatal("There is no session");
    isCancelled = false;
    Q_EMIT qGuiApp->commitDataRequest(*session);
    return !isCancelled;
}
