#include "support/footprint.h"

#include <QDir>
#include <QFile>

using namespace Qt::Literals::StringLiterals;

qint64 memoryInUse()
{
    QFile file(u"/proc/self/status"_s);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.simplified().split(' ').at(1).toLongLong();
    }
    return -1;
}

qsizetype openHandles()
{
    const QStringList handles = QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::System);
    return handles.isEmpty() ? -1 : handles.size();
}
