#include "system/machine.h"

#include <QFile>

#include <unistd.h>

std::optional<quint64> totalMemory()
{
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    if (pages <= 0 || pageSize <= 0)
        return std::nullopt;
    return quint64(pages) * quint64(pageSize);
}

QString processorName()
{
    QFile file(QStringLiteral("/proc/cpuinfo"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    for (QByteArray line = file.readLine(); !line.isEmpty(); line = file.readLine()) {
        if (line.startsWith("model name"))
            return QString::fromUtf8(line.sliced(line.indexOf(':') + 1)).trimmed();
    }
    return {};
}

QString systemFolder()
{
    return {};
}

// Each desktop here has a setting of its own, if it has one.
bool desktopPrefersReducedMotion()
{
    return false;
}
