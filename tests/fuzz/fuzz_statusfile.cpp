#include "engine/statusfile.h"
#include "fuzz/fuzz.h"

#include <QMap>
#include <QRegularExpression>

#include <algorithm>
#include <charconv>

using namespace Qt::Literals::StringLiterals;

namespace {

QMap<QString, QString> entriesOf(QByteArray text)
{
    if (text.startsWith("\xEF\xBB\xBF"))
        text = text.mid(3);
    QMap<QString, QString> entries;
    for (const QByteArray &rawLine : text.split('\n')) {
        const QString line = QString::fromUtf8(rawLine).trimmed();
        if (line.startsWith(u'[') || line.startsWith(u'=') || !line.contains(u'='))
            continue;
        entries[line.section(u'=', 0, 0).trimmed()] = line.section(u'=', 1).trimmed();
    }
    return entries;
}

/// The number of `text` where it is plainly one; nothing where it may be or is none.
std::optional<double> plainNumber(const QString &text)
{
    static const QRegularExpression plain(uR"(\A-?\d{1,9}(\.\d{1,9})?\z)"_s);
    if (!plain.match(text).hasMatch())
        return std::nullopt;
    const QByteArray latin = text.toLatin1();
    double number = 0.0;
    std::from_chars(latin.begin(), latin.end(), number);
    return number;
}

bool mayBeANumber(const QString &text)
{
    static const QRegularExpression characters(u"\\A[-+.0-9eEinfatyINFATY]+\\z"_s);
    return characters.match(text).hasMatch();
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray text = FuzzInput(data, size).rest();
    const StatusFile status = parseStatusFile(text);
    const QMap<QString, QString> entries = entriesOf(text);

    requireEqual(status.file, entries.value(u"file"_s), "file");
    requireEqual(status.status, entries.value(u"status"_s), "status");

    const QString percent = entries.value(u"progress"_s);
    if (status.fraction)
        require(*status.fraction >= 0.0 && *status.fraction <= 1.0, "fraction from 0 to 1");
    if (const auto number = plainNumber(percent)) {
        require(status.fraction.has_value(), "a number is a fraction");
        requireEqual(*status.fraction, std::clamp(*number / 100.0, 0.0, 1.0), "fraction");
    } else if (!mayBeANumber(percent)) {
        require(!status.fraction, "no number is no fraction");
    }
    return 0;
}
