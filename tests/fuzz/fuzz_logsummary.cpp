#include "engine/logsummary.h"
#include "fuzz/fuzz.h"

#include <QBuffer>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace {

QString textOf(const QByteArray &line)
{
    constexpr qsizetype kLongestLine =
        64 * 1024; // bytes; of a longer one only the beginning counts
    return QString::fromUtf8(line.left(kLongestLine)).trimmed();
}

QString slowReason(const QByteArray &log)
{
    QString reason;
    QString last;
    const QList<QByteArray> lines = log.split('\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString line = textOf(lines[i]);
        if (line.isEmpty())
            continue;
        if (line.contains(u"suppressed message box", Qt::CaseInsensitive)) {
            reason.clear();
            while (reason.isEmpty() && ++i < lines.size())
                reason = textOf(lines[i]);
            continue;
        }
        for (const QString &word : { u"exception"_s, u"error"_s, u"failed"_s }) {
            if (reason.isEmpty() && line.contains(word, Qt::CaseInsensitive))
                reason = line;
        }
        last = line;
    }
    return reason.isEmpty() ? last : reason;
}

/// Letters beyond ASCII that fold to one of ours (the Kelvin sign, the long s) are no letters of a
/// log's own words; the engine writes those in ASCII.
bool foldsToAscii(const QByteArray &log)
{
    const QString text = QString::fromUtf8(log);
    for (const QChar c : text) {
        if (c.unicode() > 0x7F && c.toCaseFolded().unicode() <= 0x7F)
            return true;
    }
    return false;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    QByteArray log = input.bytes(input.byte());
    log += fillerFor(input.byte());
    log += input.rest();
    if (foldsToAscii(log))
        return 0;
    QBuffer buffer(&log);
    require(buffer.open(QIODevice::ReadOnly), "a log to read");
    requireEqual(failureReason(buffer), slowReason(log), "reason");
    return 0;
}
