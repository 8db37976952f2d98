#include "engine/statusfile.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// Percent text to a fraction from 0 to 1; nothing if the text is no number with a decimal point.
std::optional<double> parseFraction(const QString &percent)
{
    bool isNumber = false;
    const double fraction = percent.toDouble(&isNumber) / 100.0;
    if (!isNumber)
        return std::nullopt;
    if (fraction > 1.0)
        return 1.0;
    // Written so that "nan", which compares false with everything, counts as 0.
    return fraction > 0.0 ? fraction : 0.0;
}

} // namespace

StatusFile parseStatusFile(QByteArrayView text)
{
    StatusFile result;
    QString percent;
    while (!text.isEmpty()) {
        const qsizetype newline = text.indexOf('\n');
        const QByteArrayView rawLine = newline < 0 ? text : text.first(newline);
        text = newline < 0 ? QByteArrayView() : text.sliced(newline + 1);

        // Which also skips a byte-order mark.
        const QString line = QString::fromUtf8(rawLine).trimmed();
        const qsizetype equals = line.indexOf(u'=');
        if (line.startsWith(u'[') || equals <= 0)
            continue;
        const QStringView key = QStringView(line).first(equals).trimmed();
        const QString value = line.sliced(equals + 1).trimmed();
        if (key == "progress"_L1)
            percent = value;
        else if (key == "file"_L1)
            result.file = value;
        else if (key == "status"_L1)
            result.status = value;
    }
    result.fraction = parseFraction(percent);
    return result;
}
