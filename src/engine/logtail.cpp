#include "engine/logtail.h"

#include "files/regularfile.h"

#include <QByteArray>
#include <QFileInfo>

#include <string_view>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QByteArrayView kMarker = "Dest filename: ";

/// How much is searched at a time. A line beyond that, which no path fills, is searched in pieces.
constexpr qint64 kBlockSize = 64 * 1024;

/// The text after the line's first marker. The line is trimmed first, so that a marker at its end
/// does not count.
QString fileNamedBy(QByteArrayView rawLine)
{
    const QString line = QString::fromUtf8(rawLine).trimmed();
    const qsizetype marker = line.indexOf(QLatin1StringView(kMarker));
    return marker < 0 ? QString() : line.sliced(marker + kMarker.size()).trimmed();
}

/// Where the last marker of `lines` begins; -1 without one. Searches forwards first: most of a long
/// log names no file, and only forwards does the library compare many bytes at a time.
qsizetype lastMarkerIn(QByteArrayView lines)
{
    const std::string_view text(lines.data(), size_t(lines.size()));
    const std::string_view marker(kMarker.data(), size_t(kMarker.size()));
    return text.find(marker) == text.npos ? -1 : qsizetype(text.rfind(marker));
}

/// The file named by the last line of `lines` that names one.
QString lastFileIn(QByteArrayView lines)
{
    while (true) {
        const qsizetype marker = lastMarkerIn(lines);
        if (marker < 0)
            return {};
        const qsizetype lineStart = lines.lastIndexOf('\n', marker) + 1;
        const qsizetype lineEnd = lines.indexOf('\n', marker);
        const QByteArrayView line =
            lines.sliced(lineStart, (lineEnd < 0 ? lines.size() : lineEnd) - lineStart);
        if (const QString file = fileNamedBy(line); !file.isEmpty())
            return file;
        lines = lines.first(lineStart);
    }
}

} // namespace

LogTail::LogTail(const QString &path) : m_path(path) {}

QString LogTail::readNewestFile()
{
    if (m_path.isEmpty())
        return {};
    const qint64 size = QFileInfo(m_path).size();
    if (size <= m_position)
        return {};
    QFile log(m_path);
    if (!openRegularFile(log))
        return {};

    QString newest;
    QByteArray block;
    for (qint64 end = size; end > m_position && newest.isEmpty();) {
        const qint64 start = qMax(m_position, end - kBlockSize);
        block.resize(end - start);
        if (!log.seek(start) || log.read(block.data(), block.size()) != block.size())
            return {}; // the log has been cut meanwhile: the next poll tries again

        // The block's first line may have begun before it; it then belongs to the next block,
        // unless it fills this one.
        qsizetype firstLine = start > m_position ? block.indexOf('\n') + 1 : 0;
        if (firstLine == block.size())
            firstLine = 0;
        newest = lastFileIn(QByteArrayView(block).sliced(firstLine));
        end = start + firstLine;
    }
    m_position = size;
    return newest;
}
