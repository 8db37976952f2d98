#include "system/registry.h"

#include <QSettings>

QVariant readRegistryValue(const QString &keyPath, const QString &name)
{
    // QSettings creates the key that it is opened on if the process has the right to do so. So open
    // a root's first key, which always exists, and read below it.
    const qsizetype rootEnd = keyPath.indexOf(u'\\', keyPath.indexOf(u'\\') + 1);
    const QString below = rootEnd < 0 ? QString() : keyPath.sliced(rootEnd + 1) + u'/';
    const QSettings settings(rootEnd < 0 ? keyPath : keyPath.first(rootEnd),
                             QSettings::NativeFormat);
    return settings.value(QString(below + name).replace(u'\\', u'/'));
}
