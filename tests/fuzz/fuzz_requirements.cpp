// The names that a processor and a system give themselves.

#include "fuzz/fuzz.h"
#include "system/requirements.h"

#include <QRegularExpression>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace {

QString slowProcessor(QString name, int megahertz, const QString &architecture)
{
    name.replace(u"(R)"_s, QString());
    name.replace(u"(TM)"_s, QString());
    name.replace(u"CPU"_s, QString());
    QStringList words;
    QString word;
    for (const QChar c : QString(name + u' ')) {
        if (!c.isSpace()) {
            word += c;
        } else if (!word.isEmpty()) {
            words.append(word);
            word.clear();
        }
    }
    name = words.isEmpty() ? architecture : words.join(u' ');
    if (megahertz <= 0 || name.contains(u"GHz"))
        return name;
    return name + u" · "_s + QString::asprintf("%.1f", megahertz / 1000.0) + u" GHz"_s;
}

QString slowSystem(const OperatingSystem &system)
{
    QString name = system.productName;
    if (system.build >= 22000)
        name = name.split(u"Windows 10"_s).join(u"Windows 11"_s);
    if (name.isEmpty())
        name = system.prettyName;
    QString text = name;
    for (const QString &part :
         { system.displayVersion,
           system.architecture.contains(u"64") ? u"64-bit"_s : u"32-bit"_s }) {
        if (!part.isEmpty())
            text += text.isEmpty() ? part : QString(u" · "_s + part);
    }
    if (system.build > 0 && system.build < 17763)
        text += u" — unsupported"_s;
    return text;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    const std::uint8_t high = input.byte();
    const int number = qint16(high << 8 | input.byte());
    const QString first = QString::fromUtf8(input.bytes(input.byte()));
    const QString second = QString::fromUtf8(input.bytes(input.byte()));
    const QString third = QString::fromUtf8(input.rest());

    const CheckResult processor = judgeProcessor(first, number, second);
    requireEqual(processor.value, slowProcessor(first, number, second), "processor");
    require(processor.ok, "any processor will do");

    const OperatingSystem system { .productName = first,
                                   .displayVersion = second,
                                   .build = number,
                                   .prettyName = third,
                                   .architecture = third };
    const CheckResult judged = judgeOperatingSystem(system);
    requireEqual(judged.value, slowSystem(system), "system");
    requireEqual(judged.ok, number <= 0 || number >= 17763, "supported");
    return 0;
}
