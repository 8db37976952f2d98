#include "engine/logsummary.h"

#include "engine/wordfinder.h"

#include <QByteArray>
#include <QIODevice>

#include <algorithm>
#include <limits>

namespace {

constexpr qsizetype kBufferSize = 64 * 1024;

QString textOf(QByteArrayView line)
{
    return QString::fromUtf8(line).trimmed();
}

/// Searches a log that is passed in blocks of whole lines.
class FailureSearch
{
public:
    void addLines(QByteArrayView lines);
    [[nodiscard]] QString reason() const { return m_reason.isEmpty() ? m_lastLine : m_reason; }

private:
    /// Takes the next line with text as the message box's and returns what comes after it.
    QByteArrayView takeBoxText(QByteArrayView lines);
    void rememberLastLine(QByteArrayView lines);

    static constexpr QByteArrayView kBoxMarker = "suppressed message box";
    const WordFinder m_boxMarker { kBoxMarker };
    const WordFinder m_anyWord { kBoxMarker, "exception", "error", "failed" };
    bool m_boxTextFollows = false;
    QString m_reason;
    QString m_lastLine; ///< last line with text that is no part of a message box
};

void FailureSearch::addLines(QByteArrayView lines)
{
    while (!lines.isEmpty()) {
        if (m_boxTextFollows) {
            lines = takeBoxText(lines);
            continue;
        }
        // Once there is a reason only a message box can replace it, and that is the faster search.
        const auto found = (m_reason.isEmpty() ? m_anyWord : m_boxMarker).find(lines);
        if (!found)
            break;
        const qsizetype start = lines.first(*found).lastIndexOf('\n') + 1;
        const qsizetype newline = lines.indexOf('\n', *found);
        const qsizetype end = newline < 0 ? lines.size() : newline;
        const QByteArrayView line = lines.sliced(start, end - start);
        m_boxTextFollows = m_boxMarker.find(line).has_value();
        m_reason = m_boxTextFollows ? QString() : textOf(line);
        rememberLastLine(lines.first(m_boxTextFollows ? start : end));
        lines = lines.sliced(qMin(end + 1, lines.size()));
    }
    rememberLastLine(lines);
}

QByteArrayView FailureSearch::takeBoxText(QByteArrayView lines)
{
    const qsizetype newline = lines.indexOf('\n');
    m_reason = textOf(newline < 0 ? lines : lines.first(newline));
    m_boxTextFollows = m_reason.isEmpty();
    return newline < 0 ? QByteArrayView() : lines.sliced(newline + 1);
}

void FailureSearch::rememberLastLine(QByteArrayView lines)
{
    while (!lines.isEmpty()) {
        const qsizetype newline = lines.lastIndexOf('\n');
        if (const QString text = textOf(lines.sliced(newline + 1)); !text.isEmpty()) {
            m_lastLine = text;
            return;
        }
        lines = lines.first(qMax(newline, 0));
    }
}

} // namespace

QString failureReason(QIODevice &log)
{
    FailureSearch search;
    QByteArray buffer(kBufferSize, Qt::Uninitialized);
    qsizetype filled = 0;
    bool inOverlongLine = false;
    // Of a file, only what is there now: it may grow as fast as it is read.
    qint64 left = log.isSequential() ? std::numeric_limits<qint64>::max() : log.size() - log.pos();
    while (left > 0) {
        const qint64 got =
            log.read(buffer.data() + filled, qMin<qint64>(kBufferSize - filled, left));
        if (got <= 0)
            break;
        left -= got;
        filled += got;
        QByteArrayView text = QByteArrayView(buffer).first(filled);
        if (inOverlongLine) {
            const qsizetype newline = text.indexOf('\n');
            if (newline < 0) {
                filled = 0;
                continue;
            }
            inOverlongLine = false;
            text = text.sliced(newline + 1);
        }
        const qsizetype lastNewline = text.lastIndexOf('\n');
        inOverlongLine = lastNewline < 0 && text.size() == kBufferSize;
        const qsizetype whole = inOverlongLine ? text.size() : lastNewline + 1;
        search.addLines(text.first(whole));
        filled = text.size() - whole;
        std::copy(text.end() - filled, text.end(), buffer.begin());
    }
    if (!inOverlongLine)
        search.addLines(QByteArrayView(buffer).first(filled));
    return search.reason();
}
