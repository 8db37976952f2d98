#pragma once

#include <QByteArrayView>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

/// Finds the first of several words in a text, ASCII letter case ignored, in far fewer looks than the
/// text has bytes: two bytes tell how far the search may jump.
///
/// Source: S. Wu, U. Manber, "A fast algorithm for multi-pattern searching", University of Arizona
/// TR-94-17, 1994 (blocks of two bytes, no hash table: our words are a handful).
class WordFinder
{
public:
    /// `words`: lower-case ASCII, two or more bytes each, and no longer than 256; they must outlive
    /// the finder.
    explicit WordFinder(std::initializer_list<QByteArrayView> words);

    /// Offset of the leftmost occurrence of any word in `text` at or after `from`.
    [[nodiscard]] std::optional<qsizetype> find(QByteArrayView text, qsizetype from = 0) const;

private:
    [[nodiscard]] bool startsWithWord(QByteArrayView text) const;

    std::vector<QByteArrayView> m_words;
    qsizetype m_window = 0; ///< length of the shortest word
    std::array<std::uint8_t, 1 << 16> m_shift {};
};
