#pragma once

#include <QByteArrayView>

#include <initializer_list>
#include <optional>
#include <vector>

/// Finds the first of several words in a text, ASCII letter case ignored, at several bytes per
/// cycle: it searches for the three neighbouring letters of each word that are rarest in English
/// text, in a loop that the compiler turns into vector instructions.
class WordFinder
{
public:
    /// `words`: lower-case ASCII, three or more bytes each; they must outlive the finder.
    explicit WordFinder(std::initializer_list<QByteArrayView> words);

    /// Offset of the leftmost occurrence of any word in `text`.
    [[nodiscard]] std::optional<qsizetype> find(QByteArrayView text) const;

private:
    struct Word
    {
        QByteArrayView text;
        qsizetype probe; ///< offset of its rarest letters
    };

    [[nodiscard]] bool anyWordAt(QByteArrayView text, qsizetype start) const;
    [[nodiscard]] std::optional<qsizetype> findByProbes(QByteArrayView text, qsizetype probesBegin,
                                                        qsizetype probesEnd) const;

    std::vector<Word> m_words;
    qsizetype m_longest = 0;
};
