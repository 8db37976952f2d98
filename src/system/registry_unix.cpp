#include "system/registry.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

/// The registry knows no letter case in its names, so neither does its stand-in.
QJsonValue findIgnoringCase(const QJsonObject &object, const QString &name)
{
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (it.key().compare(name, Qt::CaseInsensitive) == 0)
            return it.value();
    }
    return QJsonValue::Undefined;
}

} // namespace

QVariant readRegistryValue(const QString &keyPath, const QString &name)
{
    // Read afresh each time, like the registry itself: the setup engine may have changed it.
    QFile file(qEnvironmentVariable("VARNEL_REGISTRY_JSON"));
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    const QJsonObject registry = QJsonDocument::fromJson(file.readAll()).object();
    const QJsonValue value = findIgnoringCase(findIgnoringCase(registry, keyPath).toObject(), name);
    return value.isString() || value.isDouble() ? value.toVariant() : QVariant();
}
