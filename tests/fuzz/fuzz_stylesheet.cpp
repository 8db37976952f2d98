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

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    const bool dark = input.byte() & 1;
    const QString text = QString::fromUtf8(input.rest());
    ThemeManager::instance().setDarkMode(dark);
    requireEqual(ThemeManager::instance().resolve(text), slowResolve(text, dark), "style sheet");
    return 0;
}
