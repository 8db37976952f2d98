// The style sheet resolver, token by token: at each place the longest name in the table that stands
// there.

#include "fuzz/fuzz.h"
#include "theme/thememanager.h"
#include "theme/tokens.h"

using namespace Qt::Literals::StringLiterals;

namespace {

QString slowResolve(const QString &text, bool dark)
{
    QString resolved;
    for (qsizetype at = 0; at < text.size();) {
        QLatin1StringView name;
        QLatin1StringView colour;
        for (const ThemeToken &token : themeTokens()) {
            if (QStringView(text).sliced(at).startsWith(token.name)
                && token.name.size() > name.size()) {
                name = token.name;
                colour = dark ? token.dark : token.light;
            }
        }
        if (name.isEmpty()) {
            resolved += text[at++];
        } else {
            resolved += colour;
            at += name.size();
        }
    }
    return resolved;
}

/// Any text, with the names of the table strewn in, which would hardly be met by chance: a byte
/// from 128 on stands for one of them, together with the next byte; behind a zero the text is as it
/// is.
QString textFrom(FuzzInput &input)
{
    QString text;
    while (const std::uint8_t letter = input.byte()) {
        if (letter < 128)
            text += QLatin1Char(char(letter));
        else
            text += themeTokens()[(letter * 256u + input.byte()) % themeTokens().size()].name;
    }
    return text + QString::fromUtf8(input.rest());
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    const bool dark = input.byte() & 1;
    const QString text = textFrom(input);
    ThemeManager::instance().setDarkMode(dark);
    requireEqual(ThemeManager::instance().resolve(text), slowResolve(text, dark), "style sheet");
    return 0;
}
