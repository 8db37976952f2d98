#pragma once

#include "theme/tokens.h"

#include <QString>
#include <QStringList>

#include <algorithm>

/// The row of the token `name`; nothing if there is none.
[[nodiscard]] inline const ThemeToken *findToken(const QString &name)
{
    const auto tokens = themeTokens();
    const auto row = std::ranges::find(tokens, name, &ThemeToken::name);
    return row == tokens.end() ? nullptr : &*row;
}

/// The words of a list with blanks.
[[nodiscard]] inline QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(u' ');
}
