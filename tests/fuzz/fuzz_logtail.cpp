// Any cutting of the same log into polls: each poll gives the last file name among the lines that
// it is the first to see.

#include "engine/logtail.h"
#include "fuzz/fuzz.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// What is looked at in one piece.
constexpr qsizetype kPiece = 64 * 1024; // bytes

/// Such a line, which no path is, is looked at in pieces.
bool hasOverlongLine(const QByteArray &part)
{
    const QList<QByteArray> lines = part.split('\n');
    return std::any_of(lines.begin(), lines.end(),
                       [](const QByteArray &line) { return line.size() >= kPiece; });
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

/// As it is really looked for: piece by piece from the end. A piece's first line may have begun
/// before it, and is left to the piece before, unless it is all that there is in this one.
QString newestFileByPieces(QByteArray part)
{
    while (!part.isEmpty()) {
        const QByteArray piece = part.right(kPiece);
        QByteArray whole = piece;
        if (piece.size() < part.size()) {
            const qsizetype lineEnd = piece.indexOf('\n');
            const QByteArray following = piece.mid(lineEnd + 1);
            if (lineEnd >= 0 && !following.isEmpty())
                whole = following;
        }
        const QString newest = newestFileIn(whole);
        if (!newest.isEmpty())
            return newest;
        part.chop(whole.size());
    }
    return {};
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
        requireEqual(newest, newestFileByPieces(part), "newest file, by pieces");
        if (!hasOverlongLine(part))
            requireEqual(newest, newestFileIn(part), "newest file");
        requireEqual(tail.readNewestFile(), QString(), "nothing new");
    }
    return 0;
}
