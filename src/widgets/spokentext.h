#pragma once

#include <QStringList>

/// Joins plain texts for a screen reader. Each line becomes a sentence: it gets a full stop unless
/// it ends in punctuation. Lines without a letter or a digit, such as an arrow, are left out.
[[nodiscard]] QString spokenText(const QStringList &texts);
