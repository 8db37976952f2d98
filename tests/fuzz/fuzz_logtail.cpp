// Any cutting of the same log into polls: each poll gives the last file name among the lines that
// it is the first to see.

#include "engine/logtail.h"
#include "fuzz/fuzz.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Such a line, which no path is, is looked at in pieces.
bool hasOverlongLine(const QByteArray &part)
{
    constexpr qsizetype kPiece = 64 * 1024; // bytes
    const QList<QByteArray> lines = part.split('\n');
    return std::any_of(lines.begin(), lines.end(),
                       [](const QByteArray &line) { return line.size() >= kPiece; });
}

/// A piece may begin or end within a letter.
QString withoutCutLetters(const QByteArray &text)
{
    return QString::fromUtf8(text).remove(QChar::ReplacementCharacter);
}

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
        const QString newest = tail.readNewestFile();
        if (hasOverlongLine(part))
            require(withoutCutLetters(part).contains(withoutCutLetters(newest.toUtf8())),
                    "a name that the log holds");
        else
            requireEqual(newest, newestFileIn(part), "newest file");
        requireEqual(tail.readNewestFile(), QString(), "nothing new");
    }
    return 0;
}
