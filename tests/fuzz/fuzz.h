#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QDebug>
#include <QString>

#include <cstdint>
#include <cstdlib>

/// What the programs of this folder share. Each judges one reader of outside text: it gives it any
/// bytes and compares the result with a slow, obvious reference. A difference ends the program,
/// which makes the fuzzer keep the input.

/// The entry that each program defines; `size` bytes at `data`.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// Hands out an input piece by piece: small numbers for decisions, the rest as text.
class FuzzInput
{
public:
    FuzzInput(const std::uint8_t *data, std::size_t size)
        : m_rest(reinterpret_cast<const char *>(data), qsizetype(size))
    {}

    /// The next byte; 0 when there is none left.
    [[nodiscard]] std::uint8_t byte()
    {
        if (m_rest.isEmpty())
            return 0;
        const auto first = std::uint8_t(m_rest.front());
        m_rest = m_rest.sliced(1);
        return first;
    }

    [[nodiscard]] bool isEmpty() const { return m_rest.isEmpty(); }
    /// Up to `size` of the next bytes.
    [[nodiscard]] QByteArray bytes(qsizetype size)
    {
        const QByteArrayView taken = m_rest.first(qMin(size, m_rest.size()));
        m_rest = m_rest.sliced(taken.size());
        return taken.toByteArray();
    }
    [[nodiscard]] QByteArray rest() { return bytes(m_rest.size()); }

private:
    QByteArrayView m_rest;
};

/// What says nothing: mostly nothing at all; for the last few values about as much as is read in
/// one piece, so that what follows falls across a border of the pieces. First come a few that are
/// all one line, then a few of many lines.
[[nodiscard]] inline QByteArray fillerFor(std::uint8_t choice)
{
    constexpr QByteArrayView kLine = "filler\n";
    constexpr int kPiece = 64 * 1024;
    constexpr std::uint8_t kFirstUnbroken = 246;
    constexpr std::uint8_t kFirstBroken = 252;
    if (choice >= kFirstBroken)
        return kLine.toByteArray().repeated(kPiece / kLine.size() - (choice - kFirstBroken));
    if (choice >= kFirstUnbroken)
        return QByteArray(kPiece - 8 + (choice - kFirstUnbroken), 'x');
    return {};
}

/// Ends the program, with both values on stderr, unless they are equal.
template <typename Value>
void requireEqual(const Value &actual, const Value &expected, const char *what)
{
    if (actual == expected)
        return;
    qCritical().nospace() << what << "\n  actual   " << actual << "\n  expected " << expected;
    std::abort();
}

/// Ends the program unless `condition` holds.
inline void require(bool condition, const char *what)
{
    if (condition)
        return;
    qCritical() << what;
    std::abort();
}
