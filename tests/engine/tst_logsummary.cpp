#include "engine/logsummary.h"
#include "engine/process.h"
#include "engine/wordfinder.h"
#include "support/stricttest.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <vector>

using namespace Qt::Literals::StringLiterals;

// Why a run has failed, as its log tells, and the search for words in it. fuzz_logsummary compares
// it with a slow and simple one.
class TestLogSummary : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void reason_data();
    void reason();
    void endsWhereTheLogEndedAtFirst();
    void everyPlaceOfABlockBorder();
    void constantMemory();
    void words();
    void everyPlaceInALongText();
    void everyLetterInBothCases();
    void likeNaiveSearch();
};

namespace {

constexpr int kBlock = 64 * 1024;
constexpr auto kBox = "2026-01-01 12:00:00.000   Defaulting to OK for suppressed message box (OK):";

/// A log that grows as fast as it is read.
class GrowingLog : public QIODevice
{
public:
    explicit GrowingLog(const QByteArray &start) : m_start(start) { open(ReadOnly | Unbuffered); }
    qint64 size() const override { return m_start.size(); }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        for (qint64 i = 0; i < maxSize; ++i)
            data[i] = pos() + i < m_start.size() ? m_start[pos() + i] : '\n';
        return maxSize;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_start;
};

/// Gives so many bytes, `text` again and again, in small portions of changing size, as a slow disk
/// or a pipe would. They never are in memory as a whole.
class DribblingDevice : public QIODevice
{
public:
    DribblingDevice(const QByteArray &text, qint64 size) : m_text(text), m_size(size)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    [[nodiscard]] bool isSequential() const override { return true; }
    [[nodiscard]] bool isAllRead() const { return m_position == m_size; }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const qint64 left = m_size - m_position;
        const qint64 size = std::min({ maxSize, left, qint64(m_random.bounded(1, 30'000)) });
        for (qint64 i = 0; i < size; ++i, ++m_position)
            data[i] = m_text[m_position % m_text.size()];
        return size;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_text;
    qint64 m_size;
    qint64 m_position = 0;
    QRandomGenerator m_random { 99 };
};

QString reasonIn(QByteArray log)
{
    QBuffer buffer(&log);
    buffer.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    return failureReason(buffer);
}

constexpr qsizetype kNowhere = -1;

qsizetype offset(std::optional<qsizetype> found)
{
    return found.value_or(kNowhere);
}

qsizetype naiveFind(const QByteArrayList &words, const QByteArray &text)
{
    const QByteArray folded = text.toLower(); // ASCII letters only
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

void TestLogSummary::reason_data()
{
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const QByteArray &log, const QString &reason) {
        QTest::newRow(name) << log << reason;
    };
    const QByteArray box = QByteArray(kBox) + "\r\n";
    const QString space = u"There is not enough space on the disk."_s;
    const QByteArray spaceLine = "                          " + space.toUtf8() + "\r\n";

    row("empty", "", u""_s);
    row("byte-order mark alone", "\xEF\xBB\xBF", u""_s);
    row("byte-order mark before the only line", "\xEF\xBB\xBFLog opened.\r\n", u"Log opened."_s);

    row("last line, no line break", "Log opened.\nLog closed.", u"Log closed."_s);
    row("last line, blank lines after it", "one\n  two \t\n\n \r\n\t\n", u"two"_s);

    row("any letter case", "one\neXCePTioN\ntwo\n", u"eXCePTioN"_s);
    row("first of them wins", "one failed\ntwo error\nthree exception\n", u"one failed"_s);
    row("other forms do not count", "one\nfailure, fail, err, except\ntwo\n", u"two"_s);
    row("across two lines", "one fai\nled err\r\nor\n", u"or"_s);

    row("message box", box + spaceLine + "Log closed.\r\n", space);
    row("message box after an error", "one failed\r\n" + box + spaceLine + "two\r\n", space);
    row("last message box wins", box + "first\n" + box + "second\n", u"second"_s);
    row("only its first line", box + "first\nsecond\nthird error\n", u"first"_s);
    row("blank lines before its text", box + "\r\n  \r\n\t\n" + spaceLine + "last\n", space);
    row("marker with an error word", "Error: suppressed message box failed\nfirst\nlast\n",
        u"first"_s);
    row("text that looks like a marker", box + box + "first\nlast\n", QString::fromLatin1(kBox));

    row("blank lines after the marker", "one\n" + box + "\n \n\t\r\n", u"one"_s);
    row("last marker without text undoes the first", box + "first\ntwo\n" + box, u"two"_s);
    row("marker is no last line", box + "first\n" + box, u""_s);

    row("not UTF-8", "a\xE4z failed\nlast\n", u"a\ufffdz failed"_s);
    row("markers and markup stay", "<b>%1</b> error %2\nlast\n", u"<b>%1</b> error %2"_s);
    row("zero bytes", QByteArray("a\0failed\nlast\n", 14), QString::fromUtf16(u"a\0failed", 8));

    const QByteArray beginning(kBlock, 'x');
    const QString shown = QString::fromLatin1(beginning);
    row("overlong line: is cut at the end of the log", beginning + "yyy", shown);
    row("overlong line: whole, just so", beginning + "\n", shown);
    row("overlong line: the next line counts", beginning + "yyy\nlast\n", u"last"_s);
    row("overlong line: error in its beginning", "failed " + beginning + "\nlast\n",
        u"failed "_s + shown.chopped(7));
    row("overlong line: error beyond its beginning", beginning + " failed\nlast\n", u"last"_s);
    row("overlong line: error across its cut", beginning.chopped(3) + "failed\nlast\n", u"last"_s);
    row("overlong line: marker beyond its beginning",
        beginning + "suppressed message box\nfirst\nlast\n", u"last"_s);
    row("overlong line: box text", "suppressed message box\n" + beginning + "yyy\nlast\n", shown);
}

void TestLogSummary::reason()
{
    QFETCH(const QByteArray, log);
    QFETCH(const QString, reason);
    QCOMPARE(reasonIn(log), reason);
    DribblingDevice device(log, log.size());
    QCOMPARE(failureReason(device), reason);
}

void TestLogSummary::endsWhereTheLogEndedAtFirst()
{
    GrowingLog log(QByteArray("Copying\n").repeated(kBlock / 4) + "The disk failed.\n");
    QCOMPARE(failureReason(log), u"The disk failed."_s);
    QCOMPARE(log.pos(), log.size());
}

// Whatever a line is about, it may lie on the border of what is read in one piece.
void TestLogSummary::everyPlaceOfABlockBorder()
{
    const QByteArray lines =
        "one\r\n" + QByteArray(kBox) + "\r\n   The \xC3\xA4.dll is in use.\r\n";
    for (int shift = 0; shift <= lines.size(); ++shift) {
        const QByteArray filler = QByteArray(kBlock - shift - 1, 'x') + '\n';
        QCOMPARE(reasonIn(filler + lines + "last failed\n"), u"The \u00e4.dll is in use."_s);
    }
}

void TestLogSummary::constantMemory()
{
    const QByteArray lines = "2026-01-01 12:00:00.000   Installing the file.\r\n";
    for (const QByteArray &line : { lines, QByteArray("Installing "), QByteArray("\r\n") }) {
        DribblingDevice log(line, 12 << 20);
        const qint64 before = peakMemory();
        QVERIFY(failureReason(log).size() <= kBlock);
        QVERIFY(log.isAllRead());
        if (before < 0)
            QSKIP("memory cannot be judged");
        QVERIFY(peakMemory() - before < 2 << 20);
    }
}

void TestLogSummary::words()
{
    const WordFinder finder { "suppressed message box", "exception", "error", "failed" };
    const std::pair<QByteArray, qsizetype> places[] {
        { QByteArray(), kNowhere },
        { "err\nor", kNowhere },
        { "suppressed  message box", kNowhere },
        { "suppressed message bo", kNowhere },
        { "suppressed error message box", 11 },
        { "suppfailed", 4 },
        { "failerror", 4 },
        { "failed error exception suppressed message box", 0 },
    };
    for (const auto &[text, place] : places)
        QVERIFY2(offset(finder.find(text)) == place, text.constData());
}

// Wherever a search in larger portions may have its borders.
void TestLogSummary::everyPlaceInALongText()
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

void TestLogSummary::everyLetterInBothCases()
{
    const QByteArray alphabet = "abcdefghijklmnopqrstuvwxyzab";
    for (int i = 0; i < 26; ++i) {
        const QByteArray word = alphabet.sliced(i, 3);
        const WordFinder finder { word };
        QCOMPARE(offset(finder.find(word)), 0);
        QCOMPARE(offset(finder.find(word.toUpper())), 0);
    }
    // Bytes that differ from letters, and from each other, as a capital does from its small letter.
    QCOMPARE(offset(WordFinder { "[{[" }.find("{{[[{{[{[")), 6);
    QCOMPARE(offset(WordFinder { "```" }.find("@@@")), kNowhere);
    QCOMPARE(offset(WordFinder { "111" }.find("\x11\x11\x11")), kNowhere);
}

void TestLogSummary::likeNaiveSearch()
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
                // A block of its own, of which an address sanitizer knows the end.
                const std::vector<char> block(text.begin(), text.end());
                QVERIFY2(offset(finder.find(block)) == expected, example.constData());
                found += expected != kNowhere;
            }
        }
        // Neither outcome is rare.
        QVERIFY(found > kFinders * kTextsEach / 10);
        QVERIFY(found < kFinders * kTextsEach * 99 / 100);
    }
}

QTEST_APPLESS_MAIN(TestLogSummary)
#include "tst_logsummary.moc"
