#include "engine/logtail.h"
#include "engine/process.h"
#include "support/sandbox.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>
#include <QThread>

#include <memory>

using namespace Qt::Literals::StringLiterals;

class TestLogTail : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void line_data();
    void line();
    void onlyWhatWasAppended();
    void halfLines();
    void noLog();
    void logThatComesLate();
    void logThatIsNoFile();
    void logThatShrinks();
    void logThatShrinksWhileRead();
    void likeReadingLineByLine_data();
    void likeReadingLineByLine();
    void markerAcrossBlocks();
    void earlyMarkerInLongWindow();
    void costsWhatWasAppended();
    void newestNameCostsOneBlock();
    void overlongLine_data(); // last, for a read without end would go on beside the others
    void overlongLine();
};

namespace {

constexpr int kBlock = 64 * 1024;

/// A log that grows under a reader's eyes.
class GrowingLog
{
public:
    [[nodiscard]] QString path() const { return m_sandbox.path(u"setup.log"_s); }

    void append(const QByteArray &bytes) const
    {
        QFile file(path());
        if (!file.open(QIODevice::Append) || file.write(bytes) != bytes.size())
            qFatal("Cannot write the log");
    }

private:
    Sandbox m_sandbox;
};

/// So many lines of 80 bytes that name no file.
QByteArray fillerLines(qsizetype count)
{
    const QByteArray line = QByteArray(79, 'x') + '\n';
    return line.repeated(count);
}

/// What one look at `window` finds, the plain way.
QString slowNewestFile(const QByteArray &window)
{
    const QString marker = u"Dest filename: "_s;
    QString newest;
    for (const QByteArray &rawLine : window.split('\n')) {
        const QString line = QString::fromUtf8(rawLine).trimmed();
        const qsizetype at = line.indexOf(marker);
        if (at >= 0)
            newest = line.mid(at + marker.size()).trimmed();
    }
    return newest;
}

/// Reads in a thread of its own, so that a read without end fails only the test at hand.
QString newestFileInTime(const QString &path)
{
    static bool isOneStuck = false;
    if (isOneStuck)
        return u"(not tried: another read has no end)"_s;
    const auto file = std::make_shared<QString>();
    QThread *reader = QThread::create([file, path] { *file = LogTail(path).readNewestFile(); });
    reader->start();
    if (!reader->wait(10'000)) {
        isOneStuck = true;
        return u"(still reading)"_s;
    }
    delete reader;
    return *file;
}

} // namespace

void TestLogTail::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestLogTail::line_data()
{
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<QString>("file");
    const auto row = [](const char *name, const QByteArray &log, const QString &file) {
        QTest::newRow(name) << log << file;
    };
    const QString path = uR"(C:\a b\c.dll)"_s;
    row("empty", "", u""_s);
    row("no marker", "Installing the file.\r\n", u""_s);
    row("as the engine writes it",
        "\xEF\xBB\xBF"
        "2026-01-01 12:00:00.000   Log opened. (Time zone: UTC+00:00)\r\n"
        "2026-01-01 12:00:00.001   Dest filename: C:\\a b\\c.dll\r\n"
        "2026-01-01 12:00:00.002   Installing the file.\r\n",
        path);
    row("marker alone in the line", "Dest filename: C:\\a b\\c.dll\n", path);
    row("directly after a byte-order mark",
        "\xEF\xBB\xBF"
        "Dest filename: C:\\a b\\c.dll\n",
        path);
    row("no final line break", "x   Dest filename: C:\\a b\\c.dll", path);
    row("blanks around the name", "x   Dest filename: \t C:\\a b\\c.dll \t \r\n", path);
    row("two files", "Dest filename: a\nDest filename: b\n", u"b"_s);
    row("same file twice", "Dest filename: a\nDest filename: a\n", u"a"_s);
    row("UTF-8", "Dest filename: \xC3\xA4\xE5\x9B\x9E.sch\n", u"\u00e4\u56de.sch"_s);
    row("not UTF-8", "Dest filename: a\xE4z\n", u"a\ufffdz"_s);
    row("place marker", "Dest filename: a %1 b\n", u"a %1 b"_s);
    row("markup", "Dest filename: <b>a</b>\n", u"<b>a</b>"_s);

    row("small letters", "dest filename: a\n", u""_s);
    row("capitals", "DEST FILENAME: a\n", u""_s);
    row("no blank behind", "Dest filename:a\n", u""_s);
    row("tab behind", "Dest filename:\ta\n", u""_s);
    row("two blanks inside", "Dest  filename: a\n", u""_s);
    row("no name", "Dest filename: \r\n", u""_s);
    row("no name, many blanks", "Dest filename:    \t\r\n", u""_s);
    row("no name, end of log", "Dest filename: ", u""_s);
    row("no name after one with a name", "Dest filename: a\nDest filename: \n", u"a"_s);
    row("name in the next line", "Dest filename: \na\n", u""_s);
    row("inside another word", "xDest filename: a\n", u"a"_s);
    row("first marker of a line counts", "Dest filename: a Dest filename: b\n",
        u"a Dest filename: b"_s);
    row("marker twice, no name", "Dest filename: Dest filename: \n", u"Dest filename:"_s);
    row("first of a line, last line", "Dest filename: a\nDest filename: b Dest filename: c\n",
        u"b Dest filename: c"_s);
    row("carriage return inside", "Dest filename: a\rb\n", u"a\rb"_s);
    row("zero byte inside", QByteArray("Dest filename: a\0b\n", 19),
        QString::fromUtf16(u"a\0b", 3));
}

void TestLogTail::line()
{
    QFETCH(const QByteArray, log);
    QFETCH(const QString, file);
    const GrowingLog growing;
    growing.append(log);
    QCOMPARE(LogTail(growing.path()).readNewestFile(), file);
    QCOMPARE(slowNewestFile(log), file);
}

void TestLogTail::onlyWhatWasAppended()
{
    const GrowingLog log;
    LogTail tail(log.path());
    log.append("Dest filename: a\n");
    QCOMPARE(tail.readNewestFile(), u"a"_s);
    QCOMPARE(tail.readNewestFile(), u""_s);
    log.append("Installing the file.\n");
    QCOMPARE(tail.readNewestFile(), u""_s);
    log.append("Dest filename: b\nDest filename: c\n");
    QCOMPARE(tail.readNewestFile(), u"c"_s);
    QCOMPARE(tail.readNewestFile(), u""_s);

    LogTail second(log.path());
    QCOMPARE(second.readNewestFile(), u"c"_s);
}

void TestLogTail::halfLines()
{
    const GrowingLog log;
    LogTail tail(log.path());
    // The marker in two halves is no marker.
    log.append("x   Dest file");
    QCOMPARE(tail.readNewestFile(), u""_s);
    log.append("name: a\n");
    QCOMPARE(tail.readNewestFile(), u""_s);
    // Neither is one without a name behind it, nor the name alone.
    log.append("x   Dest filename: ");
    QCOMPARE(tail.readNewestFile(), u""_s);
    log.append("a\n");
    QCOMPARE(tail.readNewestFile(), u""_s);
    // A name is taken as far as it is there.
    log.append("x   Dest filename: C:\\Var");
    QCOMPARE(tail.readNewestFile(), u"C:\\Var"_s);
    log.append("nel\\a.dll\n");
    QCOMPARE(tail.readNewestFile(), u""_s);
    // What follows half a line counts again.
    log.append("x   Dest filename: b");
    QCOMPARE(tail.readNewestFile(), u"b"_s);
    log.append(".dll\nx   Dest filename: c\n");
    QCOMPARE(tail.readNewestFile(), u"c"_s);
}

void TestLogTail::noLog()
{
    LogTail unset;
    QCOMPARE(unset.readNewestFile(), u""_s);
    LogTail empty { QString() };
    QCOMPARE(empty.readNewestFile(), u""_s);
}

void TestLogTail::logThatComesLate()
{
    const GrowingLog log;
    LogTail tail(log.path());
    QCOMPARE(tail.readNewestFile(), u""_s);
    log.append("");
    QCOMPARE(tail.readNewestFile(), u""_s);
    log.append("Dest filename: a\n");
    QCOMPARE(tail.readNewestFile(), u"a"_s);
    // Away for a moment, as a locked file would be.
    QVERIFY(QFile::rename(log.path(), log.path() + u".away"));
    QCOMPARE(tail.readNewestFile(), u""_s);
    QVERIFY(QFile::rename(log.path() + u".away", log.path()));
    QCOMPARE(tail.readNewestFile(), u""_s);
    log.append("Dest filename: b\n");
    QCOMPARE(tail.readNewestFile(), u"b"_s);
}

void TestLogTail::logThatIsNoFile()
{
    const GrowingLog log;
    QVERIFY(QDir().mkpath(log.path() + u"/folder"));
    LogTail tail(log.path());
    QCOMPARE(tail.readNewestFile(), u""_s);
    QVERIFY(QDir(log.path()).removeRecursively());
    // The folder's own size does not count as read.
    log.append("Dest filename: a\n");
    QCOMPARE(tail.readNewestFile(), u"a"_s);

    QVERIFY(QFile::remove(log.path()));
    if (!makeFifo(log.path()))
        QSKIP("no FIFOs here");
    QCOMPARE(tail.readNewestFile(), u""_s);
    QCOMPARE(LogTail(log.path()).readNewestFile(), u""_s);
}

void TestLogTail::logThatShrinks()
{
    const GrowingLog log;
    LogTail tail(log.path());
    log.append("Dest filename: a\nDest filename: b\n");
    QCOMPARE(tail.readNewestFile(), u"b"_s);
    QVERIFY(QFile::resize(log.path(), 17));
    QCOMPARE(tail.readNewestFile(), u""_s);
    log.append("Dest filename: c\n");
    QCOMPARE(tail.readNewestFile(), u""_s);
    log.append("Dest filename: d\n");
    QCOMPARE(tail.readNewestFile(), u"d"_s);
}

void TestLogTail::logThatShrinksWhileRead()
{
    constexpr int kTurns = 500;
    constexpr int kLongest = 4 * kBlock;
    const GrowingLog log;
    const QByteArray name(200, 'n');
    const QByteArray lines = fillerLines(kBlock / 80) + "Dest filename: " + name + '\n';
    const std::unique_ptr<QThread> writer(QThread::create([&log, &lines] {
        for (int turn = 0; turn < kTurns; ++turn) {
            for (int part = 0; part <= turn % 4; ++part)
                log.append(lines);
            if (!QFile::resize(log.path(), turn * 131 % kBlock))
                qFatal("Cannot cut the log");
        }
    }));
    LogTail tail(log.path());
    writer->start();
    int looks = 0;
    int finds = 0;
    do {
        // A fresh look each time, as one that has seen much waits until there is more.
        for (const QString &file :
             { tail.readNewestFile(), LogTail(log.path()).readNewestFile() }) {
            // A name that was cut while it was looked at may come in part, but nothing else may.
            QVERIFY2(name.startsWith(file.toUtf8()), qPrintable(file));
            finds += int(!file.isEmpty());
        }
        ++looks;
    } while (!writer->isFinished());
    qInfo("%d looks, %d names", looks, finds);
    QVERIFY(finds > 0);
    log.append(fillerLines(kLongest / 80 + kBlock) + "Dest filename: last\n");
    QCOMPARE(tail.readNewestFile(), u"last"_s);
}

void TestLogTail::likeReadingLineByLine_data()
{
    QTest::addColumn<int>("longestWindow");
    QTest::addColumn<int>("longestFiller");
    QTest::addColumn<int>("fillerOdds"); // one line in so many is none
    QTest::newRow("a few bytes at a time") << 48 << 20 << 2;
    QTest::newRow("some lines at a time") << 400 << 40 << 3;
    QTest::newRow("about a block at a time") << 2 * kBlock << 6000 << 10;
    QTest::newRow("blocks at a time, few names") << 5 * kBlock << 9000 << 40;
    QTest::newRow("lines of nearly a block") << 6 * kBlock << kBlock - 2 << 2;
}

void TestLogTail::likeReadingLineByLine()
{
    QFETCH(const int, longestWindow);
    QFETCH(const int, longestFiller);
    QFETCH(const int, fillerOdds);
    static const QByteArrayList kNames {
        "Dest filename: C:\\a\\",
        "x   Dest filename: /b/",
        "Dest filename: ",
        "Dest filename:",
        "Dest filename: Dest filename: ",
        "dest filename: ",
        "Dest filename: \xC3\xA4 ",
        "Dest file",
        "name: c",
        "\xEF\xBB\xBF"
        "Dest filename: d",
    };
    static const QByteArrayList kLineEnds { "\n", "\r\n", " \n", "\n\n" };

    QRandomGenerator random(4711);
    const auto bounded = [&random](qsizetype limit) { return random.bounded(int(limit)); };
    QByteArray content;
    const qsizetype size = 12 * qBound(2000, longestWindow, 2 * kBlock);
    while (content.size() < size) {
        if (bounded(fillerOdds) == 0) {
            content += kNames[bounded(kNames.size())];
            if (bounded(2) == 0)
                content += QByteArray::number(content.size());
        } else {
            content += QByteArray(bounded(longestFiller), "xD \r"[bounded(4)]);
        }
        content += kLineEnds[bounded(kLineEnds.size())];
    }

    const GrowingLog log;
    LogTail tail(log.path());
    int found = 0;
    for (qsizetype position = 0; position < content.size();) {
        const QByteArray window = content.mid(position, bounded(longestWindow) + 1);
        log.append(window);
        const QString expected = slowNewestFile(window);
        const QByteArray place =
            QByteArray::number(position) + '+' + QByteArray::number(window.size());
        QVERIFY2(tail.readNewestFile() == expected, place.constData());
        found += !expected.isEmpty();
        position += window.size();
    }
    QVERIFY(found >= 3);
}

// Every place of the line comes to lie on the border of what is read in one piece.
void TestLogTail::markerAcrossBlocks()
{
    const QByteArray line = "x   Dest filename: C:\\\xC3\xA4 b\\c.dll\r\n";
    for (const int blocks : { 1, 2 }) {
        for (int shift = -3; shift < line.size() + 3; ++shift) {
            const qsizetype size = blocks * kBlock - shift;
            QByteArray after = fillerLines(size / 80 - 1);
            after += QByteArray(size - after.size() - 1, 'x') + '\n';
            const GrowingLog log;
            log.append(fillerLines(1) + line + after);
            QCOMPARE(LogTail(log.path()).readNewestFile(), u"C:\\\u00e4 b\\c.dll"_s);
        }
    }
}

void TestLogTail::earlyMarkerInLongWindow()
{
    const QByteArray filler = fillerLines(50'000);
    const GrowingLog log;
    log.append("Dest filename: a\n" + filler + "dest filename: b\n" + filler);
    LogTail tail(log.path());
    QCOMPARE(tail.readNewestFile(), u"a"_s);
    QCOMPARE(tail.readNewestFile(), u""_s);
}

void TestLogTail::costsWhatWasAppended()
{
    if (bytesRead() < 0)
        QSKIP("the system does not count");
    const GrowingLog log;
    LogTail tail(log.path());
    log.append(fillerLines(100'000));
    QCOMPARE(tail.readNewestFile(), u""_s);

    constexpr int kPolls = 50;
    const qint64 before = bytesRead();
    for (int i = 0; i < kPolls; ++i) {
        const QByteArray name = QByteArray::number(i);
        log.append("Dest filename: " + name + '\n');
        QCOMPARE(tail.readNewestFile(), QString::fromLatin1(name));
        QCOMPARE(tail.readNewestFile(), u""_s);
    }
    QVERIFY(bytesRead() - before < kPolls * 100);
}

void TestLogTail::newestNameCostsOneBlock()
{
    if (bytesRead() < 0)
        QSKIP("the system does not count");
    const GrowingLog log;
    log.append(fillerLines(100'000) + "Dest filename: a\n" + fillerLines(10));
    const qint64 before = bytesRead();
    QCOMPARE(LogTail(log.path()).readNewestFile(), u"a"_s);
    QVERIFY(bytesRead() - before < 2 * kBlock);
}

void TestLogTail::overlongLine_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<QByteArray>("lineEnd");
    for (const int length : { kBlock - 2, kBlock - 1, kBlock, kBlock + 1, 2 * kBlock - 1,
                              2 * kBlock, 3 * kBlock + 5, 40 * kBlock }) {
        QTest::addRow("%d bytes, ended", length) << length << QByteArray("\n");
        QTest::addRow("%d bytes, ended by CRLF", length) << length << QByteArray("\r\n");
        QTest::addRow("%d bytes, open", length) << length << QByteArray();
    }
}

void TestLogTail::overlongLine()
{
    QFETCH(const int, length);
    QFETCH(const QByteArray, lineEnd);
    const GrowingLog log;
    log.append("Dest filename: a\n" + QByteArray(length, 'x') + lineEnd);
    QCOMPARE(newestFileInTime(log.path()), u"a"_s);
    if (!lineEnd.isEmpty()) {
        log.append("Dest filename: b\n");
        QCOMPARE(newestFileInTime(log.path()), u"b"_s);
        log.append("Installing the file.\n");
        QCOMPARE(newestFileInTime(log.path()), u"b"_s);
    }
}

QTEST_APPLESS_MAIN(TestLogTail)
#include "tst_logtail.moc"
