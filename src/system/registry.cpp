#include "system/registry.h"

QString readRegistryText(const QString &keyPath, const QString &name)
{
    const QVariant value = readRegistryValue(keyPath, name);
    return value.typeId() == QMetaType::QString ? value.toString().trimmed() : QString();
}

int readRegistryInt(const QString &keyPath, const QString &name)
{
    return readRegistryValue(keyPath, name).toInt();
}
