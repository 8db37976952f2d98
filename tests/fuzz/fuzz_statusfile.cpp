#include "engine/statusfile.h"
#include "fuzz/fuzz.h"

#include <QMap>
#include <QRegularExpression>

#include <algorithm>
#include <charconv>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

QMap<QString, QString> entriesOf(const QByteArray &text)
{
    QMap<QString, QString> entries;
    for (const QByteArray &rawLine : text.split('\n')) {
        const QString line = QString::fromUtf8(rawLine).trimmed();
        if (line.startsWith(u'[') || line.startsWith(u'=') || !line.contains(u'='))
            continue;
        entries[line.section(u'=', 0, 0).trimmed()] = line.section(u'=', 1).trimmed();
    }
    return entries;
}

/// The number that `text` is: decimal, with a point, an exponent if it likes; nothing if it is none
/// or none that a double can hold.
std::optional<double> numberOf(const QString &text)
{
    static const QRegularExpression decimal(uR"(\A[-+]?(\d+\.?\d*|\.\d+)(e[-+]?\d+)?\z)"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression word(u"\\A([-+]?inf|nan)\\z"_s,
                                         QRegularExpression::CaseInsensitiveOption);
    if (!decimal.match(text).hasMatch() && !word.match(text).hasMatch())
        return std::nullopt;
    QByteArray latin = text.toLatin1();
    if (latin.startsWith('+'))
        latin = latin.mid(1);
    double number = 0.0;
    const auto [end, error] = std::from_chars(latin.begin(), latin.end(), number);
    return error == std::errc() ? std::optional(number) : std::nullopt;
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
    const std::optional<double> number = numberOf(percent);
    requireEqual(status.fraction.has_value(), number.has_value(), "whether it is a number");
    if (number) {
        const double fraction = std::isnan(*number) ? 0.0 : *number / 100.0;
        requireEqual(*status.fraction, std::clamp(fraction, 0.0, 1.0), "fraction");
    }
    return 0;
}
