// Any cutting of the same log into polls: each poll gives the last file name among the lines that
// it is the first to see.

#include "engine/logtail.h"
#include "fuzz/fuzz.h"

#include <QFile>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

namespace {

QString newestFileIn(const QByteArray &part)
{
    QString newest;
    for (const QByteArray &rawLine : part.split('\n')) {
        const QString line = QString::fromUtf8(rawLine).trimmed();
        if (line.contains(u"Dest filename: "))
            newest = line.section(u"Dest filename: "_s, 1).trimmed();
    }
    return newest;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir folder;
    FuzzInput input(data, size);
    QFile log(folder.filePath(u"log"_s));
    require(log.open(QIODevice::WriteOnly | QIODevice::Unbuffered), "a log to write");
    LogTail tail(log.fileName());
    while (!input.isEmpty()) {
        // It is read from its end, so what comes before the filler lies across a border.
        QByteArray part = input.bytes(input.byte());
        part += fillerFor(input.byte());
        part += input.bytes(input.byte());
        log.write(part);
        requireEqual(tail.readNewestFile(), newestFileIn(part), "newest file");
        requireEqual(tail.readNewestFile(), QString(), "nothing new");
    }
    return 0;
}
