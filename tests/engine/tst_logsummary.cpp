#include "engine/logsummary.h"
#include "engine/process.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

class TestLogSummary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void reason_data();
    void reason();
    void startsWhereTheDeviceStands();
    void endsWhereTheLogEndedAtFirst();
    void likeReadingLineByLine_data();
    void likeReadingLineByLine();
    void everyPlaceOfABlockBorder();
    void overlongLine_data();
    void overlongLine();
    void constantMemory();
};

namespace {

constexpr int kBlock = 64 * 1024;
constexpr auto kBox = "2026-01-01 12:00:00.000   Defaulting to OK for suppressed message box (OK):";

/// A log to which somebody adds lines as fast as they are read.
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

/// The reason, found the plain way.
QString slowReason(const QByteArray &log)
{
    QString reason;
    QStringList tail;
    bool boxTextFollows = false;
    for (const QByteArray &rawLine : log.split('\n')) {
        const QString line = QString::fromUtf8(rawLine.left(kBlock)).trimmed();
        if (line.isEmpty())
            continue;
        if (boxTextFollows) {
            reason = line;
            boxTextFollows = false;
            continue;
        }
        if (line.contains(u"suppressed message box"_s, Qt::CaseInsensitive)) {
            reason.clear();
            boxTextFollows = true;
            continue;
        }
        const bool speaksOfFailure = line.contains(u"Exception"_s, Qt::CaseInsensitive)
            || line.contains(u"Error"_s, Qt::CaseInsensitive)
            || line.contains(u"failed"_s, Qt::CaseInsensitive);
        if (reason.isEmpty() && speaksOfFailure)
            reason = line;
        tail.append(line);
        if (tail.size() > 6)
            tail.removeFirst();
    }
    return reason.isEmpty() && !tail.isEmpty() ? tail.last() : reason;
}

/// Gives its bytes in small portions of changing size, as a slow disk or a pipe would.
class DribblingDevice : public QIODevice
{
public:
    explicit DribblingDevice(const QByteArray &bytes) : m_bytes(bytes)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    [[nodiscard]] bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const qint64 left = m_bytes.size() - m_position;
        const qint64 size = std::min({ maxSize, left, qint64(m_random.bounded(1, 30'000)) });
        std::copy_n(m_bytes.cbegin() + m_position, size, data);
        m_position += size;
        return size;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_bytes;
    qint64 m_position = 0;
    QRandomGenerator m_random { 99 };
};

/// So many bytes of log lines, which never are in memory as a whole.
class EndlessLog : public QIODevice
{
public:
    EndlessLog(const QByteArray &line, qint64 size) : m_line(line), m_left(size)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    [[nodiscard]] bool isSequential() const override { return true; }
    [[nodiscard]] qint64 left() const { return m_left; }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const qint64 size = qMin(maxSize, m_left);
        for (qint64 i = 0; i < size; ++i, ++m_next)
            data[i] = m_line[m_next % m_line.size()];
        m_left -= size;
        return size;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_line;
    qint64 m_left;
    qint64 m_next = 0;
};

QString reasonIn(QByteArray log)
{
    QBuffer buffer(&log);
    buffer.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    return failureReason(buffer);
}

} // namespace

void TestLogSummary::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

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
    row("blank lines", "\r\n  \n\t\r\n\xC2\xA0\n", u""_s);
    row("byte-order mark alone", "\xEF\xBB\xBF", u""_s);
    row("byte-order mark and a line break", "\xEF\xBB\xBF\r\n", u""_s);
    row("one line", "Log opened.", u"Log opened."_s);
    row("byte-order mark before the only line", "\xEF\xBB\xBFLog opened.\r\n", u"Log opened."_s);

    row("last line", "Log opened.\r\nLog closed.\r\n", u"Log closed."_s);
    row("last line, no line break", "Log opened.\nLog closed.", u"Log closed."_s);
    row("last line, blank lines after it", "one\n  two \t\n\n \r\n\t\n", u"two"_s);
    row("last of many lines", QByteArray("one\n").repeated(20) + "two\n", u"two"_s);

    row("error", "one\n12:00   Error: no space.\ntwo\n", u"12:00   Error: no space."_s);
    row("exception", "one\nAn Exception came.\ntwo\n", u"An Exception came."_s);
    row("failed", "one\nIt failed.\ntwo\n", u"It failed."_s);
    row("small letters", "one\nan exception\ntwo\n", u"an exception"_s);
    row("capitals", "one\nIT FAILED\ntwo\n", u"IT FAILED"_s);
    row("mixed letters", "one\neRRoR\ntwo\n", u"eRRoR"_s);
    row("inside a word", "one\nterrors\ntwo\n", u"terrors"_s);
    row("first of them wins", "one failed\ntwo error\nthree exception\n", u"one failed"_s);
    row("twice in a line", "one error, failed\ntwo error\n", u"one error, failed"_s);
    row("in the first line",
        "\xEF\xBB\xBF"
        "failed\ntwo\n",
        u"failed"_s);
    row("in the last line", "one\ntwo failed", u"two failed"_s);
    row("other forms do not count", "one\nfailure, fail, err, except\ntwo\n", u"two"_s);
    row("across two lines", "one fai\nled err\r\nor\n", u"or"_s);

    row("message box", box + spaceLine + "Log closed.\r\n", space);
    row("message box at the end", "one\r\n" + box + spaceLine.trimmed(), space);
    row("message box after an error", "one failed\r\n" + box + spaceLine + "two\r\n", space);
    row("message box before an error", box + spaceLine + "two failed\r\n", space);
    row("last message box wins", box + "first\n" + box + "second\n", u"second"_s);
    row("only its first line", box + "first\nsecond\nthird error\n", u"first"_s);
    row("blank lines before its text", box + "\r\n  \r\n\t\n" + spaceLine, space);
    row("marker in capitals", "SUPPRESSED MESSAGE BOX\nfirst\nlast\n", u"first"_s);
    row("marker inside a word", "unsuppressed message boxes:\nfirst\nlast\n", u"first"_s);
    row("marker with an error word", "Error: suppressed message box failed\nfirst\nlast\n",
        u"first"_s);
    row("text that looks like a marker", box + box + "first\nlast\n", QString::fromLatin1(kBox));
    row("text with an error word", box + "It failed.\nlast\n", u"It failed."_s);
    row("marker with two blanks", "suppressed  message box\nfirst\nlast\n", u"last"_s);
    row("marker over two lines", "suppressed message\n box\nfirst\nlast\n", u"last"_s);

    row("no text after the marker", "one\n" + box, u"one"_s);
    row("blank lines after the marker", "one\n" + box + "\n \n\t\r\n", u"one"_s);
    row("nothing but a marker", box, u""_s);
    row("last marker without text undoes the first", box + "first\ntwo\n" + box, u"two"_s);
    row("marker without text undoes an error", "one failed\ntwo\n" + box, u"two"_s);
    row("box text is no last line", "one\n" + box + "first\n" + box, u"one"_s);
    row("marker is no last line", box + "first\n" + box, u""_s);

    row("UTF-8",
        "Datei f\xC3\xBC"
        "r \xE5\x9B\x9E failed\nlast\n",
        u"Datei f\u00fcr \u56de failed"_s);
    row("not UTF-8", "a\xE4z failed\nlast\n", u"a\ufffdz failed"_s);
    row("markers and markup stay", "<b>%1</b> error %2\nlast\n", u"<b>%1</b> error %2"_s);
    row("zero bytes", QByteArray("a\0failed\nlast\n", 14), QString::fromUtf16(u"a\0failed", 8));
}

void TestLogSummary::reason()
{
    QFETCH(const QByteArray, log);
    QFETCH(const QString, reason);
    QCOMPARE(reasonIn(log), reason);
    QCOMPARE(slowReason(log), reason);
}

void TestLogSummary::startsWhereTheDeviceStands()
{
    QByteArray log = "first error\nsecond error\nlast\n";
    QBuffer buffer(&log);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QVERIFY(buffer.seek(12));
    QCOMPARE(failureReason(buffer), u"second error"_s);
    QVERIFY(buffer.atEnd());
}

void TestLogSummary::endsWhereTheLogEndedAtFirst()
{
    GrowingLog log(QByteArray("Copying\n").repeated(kBlock / 4) + "The disk failed.\n");
    QCOMPARE(failureReason(log), u"The disk failed."_s);
    QCOMPARE(log.pos(), log.size());
}

void TestLogSummary::likeReadingLineByLine_data()
{
    QTest::addColumn<int>("rounds");
    QTest::addColumn<int>("mostLines");
    QTest::addColumn<int>("mostFiller"); // bytes, in one line out of four
    QTest::newRow("short logs") << 3000 << 8 << 0;
    QTest::newRow("longer logs") << 500 << 60 << 200;
    QTest::newRow("some blocks") << 60 << 40 << 20'000;
    QTest::newRow("lines of about a block") << 60 << 12 << kBlock + 100;
    QTest::newRow("overlong lines") << 40 << 8 << 3 * kBlock;
}

void TestLogSummary::likeReadingLineByLine()
{
    QFETCH(const int, rounds);
    QFETCH(const int, mostLines);
    QFETCH(const int, mostFiller);
    static const QByteArrayList kPieces {
        "",
        "",
        " ",
        "\t ",
        "\xC2\xA0",
        "\xEF\xBB\xBF",
        "\r",
        "plain",
        "more plain text",
        "Dest filename: C:\\a.dll",
        kBox,
        "suppressed message box",
        "SUPPRESSED MESSAGE BOX",
        "suppressed message  box",
        "suppressed message box failed",
        "error suppressed message box",
        "suppressed message",
        " box",
        "suppressed",
        "err",
        "or",
        "eerror",
        "ERROR",
        "exceptio",
        "Exception",
        "exceptionerror",
        "fail",
        "failed",
        "FaIlEd",
        "faile",
        "d",
        "\xFF\xFE error",
        "\xC3\xA4",
        QByteArray("\0", 1),
        "suppressed message bo error",
    };
    static const QByteArrayList kLineEnds { "\n", "\n", "\r\n", "\r\n", "\n\n", " \n\t\n", "" };

    QRandomGenerator random(1704);
    const auto bounded = [&random](qsizetype limit) { return random.bounded(int(limit)); };
    for (int round = 0; round < rounds; ++round) {
        QByteArray log = bounded(2) == 0 ? QByteArray("\xEF\xBB\xBF") : QByteArray();
        const int lines = bounded(mostLines + 1);
        for (int i = 0; i < lines; ++i) {
            if (bounded(4) == 0)
                log += QByteArray(bounded(mostFiller + 1), "x e\0"[bounded(4)]);
            // Now and then two pieces become one line.
            log += kPieces[bounded(kPieces.size())] + kLineEnds[bounded(kLineEnds.size())];
        }
        const QString expected = slowReason(log);
        QVERIFY2(reasonIn(log) == expected, log.left(2000));
        DribblingDevice device(log);
        QVERIFY2(failureReason(device) == expected, log.left(2000));
    }
}

// Whatever a line is about, it may lie on the border of what is read in one piece.
void TestLogSummary::everyPlaceOfABlockBorder()
{
    const QByteArray lines =
        "one\r\n" + QByteArray(kBox) + "\r\n   The \xC3\xA4.dll is in use.\r\n";
    for (int shift = 0; shift <= lines.size(); ++shift) {
        const QByteArray filler = QByteArray(kBlock - shift - 1, 'x') + '\n';
        QCOMPARE(reasonIn(filler + lines + "last failed\n"), u"The \u00e4.dll is in use."_s);
        QCOMPARE(reasonIn(filler + "It failed\n" + lines.first(shift) + "last"),
                 slowReason(filler + "It failed\n" + lines.first(shift) + "last"));
    }
}

void TestLogSummary::overlongLine_data()
{
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<QString>("reason");
    const QByteArray beginning(kBlock, 'x');
    const QString shown = QString::fromLatin1(beginning);
    const auto row = [](const char *name, const QByteArray &log, const QString &reason) {
        QTest::newRow(name) << log << reason;
    };
    row("is cut", beginning + "yyy\n", shown);
    row("is cut at the end of the log", beginning + "yyy", shown);
    row("of many blocks", beginning.repeated(5) + "y\n", shown);
    row("whole, just so", beginning + "\n", shown);
    row("whole, just so, end of the log", beginning, shown);
    row("the next line counts", beginning + "yyy\nlast\n", u"last"_s);
    row("the next line counts, no line break", beginning.repeated(3) + "yyy\nlast", u"last"_s);
    row("just so, the next line counts", beginning + "\nlast\n", u"last"_s);
    row("error in its beginning", "failed " + beginning + "\nlast\n",
        u"failed "_s + shown.chopped(7));
    row("error beyond its beginning", beginning + " failed\nlast\n", u"last"_s);
    row("error across its cut", beginning.chopped(3) + "failed\nlast\n", u"last"_s);
    row("error after it", beginning + "yyy\nfailed\nlast\n", u"failed"_s);
    row("marker in its beginning", "suppressed message box " + beginning + "\nfirst\nlast\n",
        u"first"_s);
    row("marker beyond its beginning", beginning + "suppressed message box\nfirst\nlast\n",
        u"last"_s);
    row("blank in its beginning", QByteArray(kBlock, ' ') + "yyy\n", u""_s);
    row("box text", "suppressed message box\n" + beginning + "yyy\nlast\n", shown);
    row("two of them", beginning + "yyy\nz" + beginning + "\n", u'z' + shown.chopped(1));
}

void TestLogSummary::overlongLine()
{
    QFETCH(const QByteArray, log);
    QFETCH(const QString, reason);
    QCOMPARE(reasonIn(log), reason);
    QCOMPARE(slowReason(log), reason);
    DribblingDevice device(log);
    QCOMPARE(failureReason(device), reason);
}

void TestLogSummary::constantMemory()
{
    const QByteArray lines = "2026-01-01 12:00:00.000   Installing the file.\r\n";
    for (const QByteArray &line : { lines, QByteArray("Installing "), QByteArray("\r\n") }) {
        EndlessLog log(line, 12 << 20);
        const qint64 before = peakMemory();
        QVERIFY(failureReason(log).size() <= kBlock);
        QCOMPARE(log.left(), 0);
        if (before < 0)
            QSKIP("memory cannot be judged");
        QVERIFY(peakMemory() - before < 2 << 20);
    }
}

QTEST_APPLESS_MAIN(TestLogSummary)
#include "tst_logsummary.moc"
