#include "engine/process.h"

#include <QByteArray>
#include <QFile>

#include <csignal>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

qint64 residentMemory()
{
#ifdef __SANITIZE_ADDRESS__
    return -1;
#endif
    return contentOf(u"/proc/self/statm"_s).split(' ').value(1).toLongLong()
        * sysconf(_SC_PAGESIZE);
}

qint64 bytesRead()
{
    const QByteArray key = "rchar: ";
    for (const QByteArray &line : contentOf(u"/proc/self/io"_s).split('\n')) {
        if (line.startsWith(key))
            return line.sliced(key.size()).toLongLong();
    }
    return -1;
}

bool processExists(qint64 processId)
{
    return ::kill(pid_t(processId), 0) == 0;
}

bool makeFifo(const QString &path)
{
    return ::mkfifo(QFile::encodeName(path).constData(), 0600) == 0;
}
