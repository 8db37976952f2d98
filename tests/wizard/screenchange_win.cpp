#include "wizard/screenchange.h"

#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonObject>

#include <qpa/qplatformnativeinterface.h>

using namespace Qt::Literals::StringLiterals;

bool setScreens(const QJsonArray &screens)
{
    QPlatformNativeInterface *native = QGuiApplication::platformNativeInterface();
    const auto configure = reinterpret_cast<void (*)(QJsonObject, QPlatformNativeInterface *)>(
        native->nativeResourceForIntegration("setConfiguration"));
    if (!configure)
        return false;
    configure({ { u"screens"_s, screens } }, native);
    return true;
}
