#pragma once

#include <QStringList>

/// What is shown in several places, put together for somebody who hears it: every line is a
/// sentence, and a line that ends in a colon leads to the next. Plain text, taken literally; a line
/// of signs only, such as an arrow, says nothing and is left out.
[[nodiscard]] QString spokenText(const QStringList &texts);
