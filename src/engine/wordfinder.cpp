#include "engine/wordfinder.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace {

/// How many neighbouring letters of a word are searched for. Two, such as "fa", occur in every
/// other line of a log ("default"); three do not.
constexpr qsizetype kProbe = 3;

/// How many places are compared at once.
constexpr qsizetype kChunk = 256;

constexpr char kCaseBit = 0x20; // tells 'a' from 'A'

/// Lower case for letters. Other characters may be confused, so a match has to be checked.
constexpr char folded(char c)
{
    return char(c | kCaseBit);
}

constexpr char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? folded(c) : c;
}

bool startsWith(QByteArrayView text, QByteArrayView word)
{
    return text.size() >= word.size()
        && std::equal(word.begin(), word.end(), text.begin(),
                      [](char expected, char c) { return expected == lower(c); });
}

/// Rank in the usual order of English letters by frequency; higher is rarer. What is no letter
/// counts as most frequent.
int rarity(char c)
{
    constexpr std::string_view kByFrequency = "etaoinshrdlcumwfgypbvkjxqz";
    const size_t rank = kByFrequency.find(c);
    return rank == std::string_view::npos ? -1 : int(rank);
}

qsizetype rarestLetters(QByteArrayView word)
{
    const auto rarityAt = [word](qsizetype i) {
        return rarity(word[i]) + rarity(word[i + 1]) + rarity(word[i + 2]);
    };
    qsizetype best = 0;
    for (qsizetype i = 1; i + kProbe <= word.size(); ++i) {
        if (rarityAt(i) > rarityAt(best))
            best = i;
    }
    return best;
}

/// Whether `letters` begin at any of the kChunk places from `text` on; reads two bytes more.
/// Without a branch in it, so that it can be vectorised.
bool chunkHolds(const char *text, const char *letters)
{
    const char first = folded(letters[0]);
    const char second = folded(letters[1]);
    const char third = folded(letters[2]);
    std::uint8_t found = 0;
    for (qsizetype i = 0; i < kChunk; ++i) {
        found = std::uint8_t(found
                             | (std::uint8_t(folded(text[i]) == first)
                                & std::uint8_t(folded(text[i + 1]) == second)
                                & std::uint8_t(folded(text[i + 2]) == third)));
    }
    return found != 0;
}

} // namespace

WordFinder::WordFinder(std::initializer_list<QByteArrayView> words)
{
    for (QByteArrayView word : words) {
        m_words.push_back({ word, rarestLetters(word) });
        m_longest = std::max(m_longest, word.size());
    }
}

std::optional<qsizetype> WordFinder::find(QByteArrayView text) const
{
    qsizetype place = 0;
    for (; place + kChunk + kProbe <= text.size(); place += kChunk) {
        const char *const chunk = text.data() + place;
        const bool worthALook =
            std::any_of(m_words.begin(), m_words.end(), [chunk](const Word &word) {
                return chunkHolds(chunk, word.text.data() + word.probe);
            });
        if (!worthALook)
            continue;
        if (const auto found = findByProbes(text, place, place + kChunk))
            return found;
    }
    return findByProbes(text, place, text.size() - kProbe + 1);
}

std::optional<qsizetype> WordFinder::findByProbes(QByteArrayView text, qsizetype probesBegin,
                                                  qsizetype probesEnd) const
{
    for (qsizetype place = probesBegin; place < probesEnd; ++place) {
        const char letter = folded(text[place]);
        for (const Word &word : m_words) {
            const qsizetype start = place - word.probe;
            if (letter != folded(word.text[word.probe]) || start < 0
                || !startsWith(text.sliced(start), word.text))
                continue;
            // A longer word whose rarest letters come later may have begun before this one.
            qsizetype leftmost = std::max<qsizetype>(0, start - m_longest);
            while (!anyWordAt(text, leftmost))
                ++leftmost;
            return leftmost;
        }
    }
    return std::nullopt;
}

bool WordFinder::anyWordAt(QByteArrayView text, qsizetype start) const
{
    return std::any_of(m_words.begin(), m_words.end(), [text, start](const Word &word) {
        return startsWith(text.sliced(start), word.text);
    });
}
