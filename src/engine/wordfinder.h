#pragma once

#include <QByteArrayView>

#include <optional>
#include <vector>

/// Finds the first of several words in a text, ASCII letter case ignored, at several bytes per
/// cycle: each word is looked for by the pair of its neighbouring letters that text holds most
/// seldom, and looking for a pair is a loop that the compiler turns into vector instructions.
class WordFinder
{
public:
    /// `words`: lower-case ASCII, two or more bytes each; they must outlive the finder.
    explicit WordFinder(std::initializer_list<QByteArrayView> words);

    /// Offset of the leftmost occurrence of any word in `text` at or after `from`.
    [[nodiscard]] std::optional<qsizetype> find(QByteArrayView text, qsizetype from = 0) const;

private:
    struct Word
    {
        QByteArrayView text;
        qsizetype pair; ///< offset of the rarest pair in it
    };

    [[nodiscard]] bool anyWordAt(QByteArrayView text, qsizetype start) const;
    [[nodiscard]] std::optional<qsizetype> findByPairs(QByteArrayView text, qsizetype from,
                                                       qsizetype pairsBegin,
                                                       qsizetype pairsEnd) const;

    std::vector<Word> m_words;
    qsizetype m_longest = 0;
};
