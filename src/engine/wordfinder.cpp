#include "engine/wordfinder.h"

#include <algorithm>

namespace {

constexpr size_t blockOf(char first, char second)
{
    return size_t(std::uint8_t(first)) << 8 | std::uint8_t(second);
}

constexpr bool isLetter(char c)
{
    return c >= 'a' && c <= 'z';
}

constexpr char upper(char c)
{
    return isLetter(c) ? char(c - 'a' + 'A') : c;
}

constexpr char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}

} // namespace

WordFinder::WordFinder(std::initializer_list<QByteArrayView> words)
    : m_words(words)
{
    const auto shorter = [](QByteArrayView a, QByteArrayView b) { return a.size() < b.size(); };
    m_window = std::min_element(m_words.begin(), m_words.end(), shorter)->size();
    m_shift.fill(std::uint8_t(m_window - 1));

    // A block that stands in a word's first m_window bytes allows a jump that brings the block's
    // place in the word under it, no further.
    for (QByteArrayView word : m_words) {
        for (qsizetype i = 1; i < m_window; ++i) {
            const auto jump = std::uint8_t(m_window - 1 - i);
            for (char first : { word[i - 1], upper(word[i - 1]) }) {
                for (char second : { word[i], upper(word[i]) }) {
                    std::uint8_t &shift = m_shift[blockOf(first, second)];
                    shift = std::min(shift, jump);
                }
            }
        }
    }
}

std::optional<qsizetype> WordFinder::find(QByteArrayView text, qsizetype from) const
{
    const char *const data = text.data();
    qsizetype last = from + m_window - 1; // last byte of the window
    while (last < text.size()) {
        const std::uint8_t shift = m_shift[blockOf(data[last - 1], data[last])];
        if (shift > 0) {
            last += shift;
            continue;
        }
        const qsizetype start = last - m_window + 1;
        if (startsWithWord(text.sliced(start)))
            return start;
        ++last;
    }
    return std::nullopt;
}

bool WordFinder::startsWithWord(QByteArrayView text) const
{
    return std::any_of(m_words.begin(), m_words.end(), [text](QByteArrayView word) {
        return text.size() >= word.size()
            && std::equal(word.begin(), word.end(), text.begin(),
                          [](char expected, char c) { return expected == lower(c); });
    });
}
