#pragma once

#include <QLatin1StringView>

#include <span>

/// One row of the colour table: a token and its colour text in either theme. A colour text is
/// upper-case "#RRGGBB", or "#AARRGGBB" where the colour is translucent: the forms QColor reads.
struct ThemeToken
{
    QLatin1StringView name; ///< with its leading "@"
    QLatin1StringView light;
    QLatin1StringView dark;
};

/// All tokens, by family, in table order. The rows live as long as the program.
[[nodiscard]] std::span<const ThemeToken> themeTokens();
