#include "system/registry.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

/// The registry ignores letter case in names, so the file that stands for it does so too.
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
    // Read it each time: the setup engine may have changed it.
    QFile file(qEnvironmentVariable("VARNEL_REGISTRY_JSON"));
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    const QJsonObject registry = QJsonDocument::fromJson(file.readAll()).object();
    const QJsonValue value = findIgnoringCase(findIgnoringCase(registry, keyPath).toObject(), name);
    return value.isString() || value.isDouble() ? value.toVariant() : QVariant();
}
