#include "engine/wordfinder.h"
#include "support/stricttest.h"

#include <QByteArray>
#include <QList>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <vector>

using namespace Qt::Literals::StringLiterals;

class TestWordFinder : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void words_data();
    void words();
    void everyPlaceInALongText();
    void everyLetterInBothCases();
    void wordInsideAnother();
    void staysInsideItsView();
    void likeNaiveSearch();
};

namespace {

constexpr qsizetype kNowhere = -1;

qsizetype offset(std::optional<qsizetype> found)
{
    return found.value_or(kNowhere);
}

qsizetype naiveFind(const QByteArrayList &words, QByteArrayView text)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; };
    QByteArray folded = text.toByteArray();
    std::transform(folded.begin(), folded.end(), folded.begin(), lower);
    qsizetype first = kNowhere;
    for (const QByteArray &word : words) {
        const qsizetype at = folded.indexOf(word);
        if (at >= 0 && (first < 0 || at < first))
            first = at;
    }
    return first;
}

QByteArray randomBytes(QRandomGenerator &random, QByteArrayView alphabet, qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (char &byte : bytes)
        byte = alphabet[random.bounded(int(alphabet.size()))];
    return bytes;
}

} // namespace

void TestWordFinder::words_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<qsizetype>("at");
    const auto row = [](const char *name, const QByteArray &text, qsizetype at) {
        QTest::newRow(name) << text << at;
    };
    row("empty", "", kNowhere);
    row("null", QByteArray(), kNowhere);
    row("none", "all went well", kNowhere);
    row("the word", "error", 0);
    row("at the end", "an eRrOr", 3);
    row("inside a word", "terrors", 1);
    row("one letter short", "an erro", kNowhere);
    row("one byte", "e", kNowhere);
    row("beginning again", "errerror", 3);
    row("beginning cut off", "rror", kNowhere);
    row("across a line break", "err\nor", kNowhere);
    row("after zero bytes", QByteArray("\0\0error", 7), 2);
    row("after high bytes",
        "\xFF\xC3\xA9\x80"
        "error",
        4);
    row("first of them", "a Suppressed Message Box", 2);
    row("leftmost, not first in the list", "failed error exception suppressed message box", 0);
    row("longer one cut off", "suppressed message bo", kNowhere);
    row("in a cut-off longer one", "suppressed error message box", 11);
    row("shorter one ends a longer one's window", "suppfailed", 4);
    row("overlapping", "failerror", 4);
    row("two blanks", "suppressed  message box", kNowhere);
}

void TestWordFinder::words()
{
    QFETCH(const QByteArray, text);
    const WordFinder finder { "suppressed message box", "exception", "error", "failed" };
    QTEST(offset(finder.find(text)), "at");
}

// Wherever a search in larger portions may have its borders.
void TestWordFinder::everyPlaceInALongText()
{
    const WordFinder finder { "suppressed message box", "exception", "error", "failed" };
    const QByteArrayList words { "Suppressed Message Box", "EXCEPTION", "error", "failed" };
    constexpr qsizetype kSize = 1100;
    for (const QByteArray &word : words) {
        for (qsizetype place = 0; place + word.size() <= kSize; ++place) {
            QByteArray text(kSize, 'x');
            text.replace(place, word.size(), word);
            QCOMPARE(offset(finder.find(text)), place);
            QCOMPARE(offset(finder.find(QByteArrayView(text).sliced(place))), 0);
            QCOMPARE(offset(finder.find(QByteArrayView(text).sliced(place + 1))), kNowhere);
            QCOMPARE(offset(finder.find(QByteArrayView(text).first(place + word.size()))), place);
            QCOMPARE(offset(finder.find(QByteArrayView(text).first(place + word.size() - 1))),
                     kNowhere);
        }
    }
}

void TestWordFinder::everyLetterInBothCases()
{
    const QByteArray alphabet = "abcdefghijklmnopqrstuvwxyzab";
    for (int i = 0; i < 26; ++i) {
        const QByteArray word = alphabet.sliced(i, 3);
        const WordFinder finder { word };
        for (int capitals = 0; capitals < 8; ++capitals) {
            QByteArray text = ".." + word;
            for (int letter = 0; letter < 3; ++letter) {
                if (capitals & 1 << letter)
                    text[2 + letter] = char(text[2 + letter] - 32);
            }
            QCOMPARE(offset(finder.find(text)), 2);
        }
    }
    // Bytes that differ from letters, and from each other, as a capital does from its small letter.
    QCOMPARE(offset(WordFinder { "[{[" }.find("{{[[{{[{[")), 6);
    QCOMPARE(offset(WordFinder { "```" }.find("@@@")), kNowhere);
    QCOMPARE(offset(WordFinder { "111" }.find("\x11\x11\x11")), kNowhere);
}

// The longer one begins first, however early in it the shorter one shows.
void TestWordFinder::wordInsideAnother()
{
    const QByteArray text = "see THE ERROR IN QXZ";
    QCOMPARE(offset(WordFinder { "the error in qxz", "error", "abc" }.find(text)), 4);
    QCOMPARE(offset(WordFinder { "error", "the error in qxz", "abc" }.find(text)), 4);
    QCOMPARE(offset(WordFinder { "the error in qxz", "error" }.find(text.chopped(1))), 8);
    QCOMPARE(offset(WordFinder { "qxz error the", "qxz", "err" }.find("qxz error th")), 0);
}

void TestWordFinder::staysInsideItsView()
{
    const WordFinder finder { "error" };
    // Blocks of their own, of which an address sanitizer knows the end.
    for (size_t size = 0; size < 1100; ++size) {
        const std::vector<char> block(size, 'r');
        const QByteArrayView view(block.data(), qsizetype(size));
        QCOMPARE(offset(finder.find(view)), kNowhere);
    }
}

void TestWordFinder::likeNaiveSearch()
{
    struct Kind
    {
        QByteArray wordAlphabet;
        QByteArray textAlphabet;
        int longestWord;
        int longestText;
    };
    const Kind kinds[] {
        { "ab", "abAB", 9, 60 },
        { "etqz", "etqzETQZ", 6, 90 }, // of unlike frequency
        { QByteArray("ab\0\xC3\xA9\xFF", 6), QByteArray("abAB\0\xC3\xA9\xFF", 8), 4, 120 },
        { "abc", "abcABC", 12, 2000 },
        { "ab", "abABab" + QByteArray(20, '-'), 4, 3000 },
    };
    constexpr int kFinders = 150;
    constexpr int kTextsEach = 30;
    QRandomGenerator random(20260101);
    for (const auto &[wordAlphabet, textAlphabet, longestWord, longestText] : kinds) {
        int found = 0;
        for (int i = 0; i < kFinders; ++i) {
            QByteArrayList words;
            for (int j = 0; j < 4; ++j)
                words << randomBytes(random, wordAlphabet, random.bounded(3, longestWord + 1));
            const WordFinder finder { words[0], words[1], words[2], words[3] };
            for (int j = 0; j < kTextsEach; ++j) {
                const QByteArray text =
                    randomBytes(random, textAlphabet, random.bounded(0, longestText));
                const qsizetype expected = naiveFind(words, text);
                const QByteArray example = words.join('|') + " in " + text;
                QVERIFY2(offset(finder.find(text)) == expected, example.constData());
                found += expected != kNowhere;
            }
        }
        // Neither outcome is rare.
        QVERIFY(found > kFinders * kTextsEach / 10);
        QVERIFY(found < kFinders * kTextsEach * 99 / 100);
    }
}

QTEST_APPLESS_MAIN(TestWordFinder)
#include "tst_wordfinder.moc"
