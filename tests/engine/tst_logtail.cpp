#include "engine/logtail.h"
#include "engine/process.h"
#include "support/sandbox.h"
#include "support/stricttest.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Compared with a slow and simple reader by fuzz_logtail.
class TestLogTail : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void line_data();
    void line();
    void halfLines();
    void logThatComesLate();
    void logThatShrinks();
    void markerAcrossBlocks();
    void cost();
    void overlongLine();
};

namespace {

constexpr int kBlock = 64 * 1024;

/// A log that grows while it is read.
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

} // namespace

void TestLogTail::line_data()
{
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<QString>("file");
    const auto row = [](const char *name, const QByteArray &log, const QString &file) {
        QTest::newRow(name) << log << file;
    };
    const QString path = uR"(C:\a b\c.dll)"_s;
    row("as the engine writes it",
        "\xEF\xBB\xBF"
        "2026-01-01 12:00:00.000   Log opened. (Time zone: UTC+00:00)\r\n"
        "2026-01-01 12:00:00.001   Dest filename: C:\\a b\\c.dll\r\n"
        "2026-01-01 12:00:00.002   Installing the file.\r\n",
        path);
    row("directly after a byte-order mark",
        "\xEF\xBB\xBF"
        "Dest filename: C:\\a b\\c.dll\n",
        path);
    row("no final line break", "x   Dest filename: C:\\a b\\c.dll", path);
    row("blanks around the name", "x   Dest filename: \t C:\\a b\\c.dll \t \r\n", path);
    row("not UTF-8", "Dest filename: a\xE4z\n", u"a\ufffdz"_s);

    row("small letters", "dest filename: a\n", u""_s);
    row("no blank behind", "Dest filename:a\n", u""_s);
    row("no name, end of log", "Dest filename: ", u""_s);
    row("no name after one with a name", "Dest filename: a\nDest filename: \n", u"a"_s);
    row("name in the next line", "Dest filename: \na\n", u""_s);
    row("inside another word", "xDest filename: a\n", u"a"_s);
    row("first marker of a line counts", "Dest filename: a Dest filename: b\n",
        u"a Dest filename: b"_s);
    row("marker twice, no name", "Dest filename: Dest filename: \n", u"Dest filename:"_s);
}

void TestLogTail::line()
{
    QFETCH(const QByteArray, log);
    QFETCH(const QString, file);
    const GrowingLog growing;
    growing.append(log);
    QCOMPARE(LogTail(growing.path()).readNewestFile(), file);
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

void TestLogTail::logThatComesLate()
{
    QCOMPARE(LogTail().readNewestFile(), u""_s);
    const GrowingLog log;
    LogTail tail(log.path());
    QCOMPARE(tail.readNewestFile(), u""_s);
    if (makeFifo(log.path())) {
        QCOMPARE(tail.readNewestFile(), u""_s);
        QVERIFY(QFile::remove(log.path()));
    }
    QVERIFY(QDir().mkpath(log.path() + u"/folder"));
    QCOMPARE(tail.readNewestFile(), u""_s);
    QVERIFY(QDir(log.path()).removeRecursively());
    // The folder's own size does not count as read.
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

// Every place of the line comes to lie on the border of what is read in one piece.
void TestLogTail::markerAcrossBlocks()
{
    const QByteArray name = "C:\\\xC3\xA4 b\\" + QByteArray(80, 'c') + ".dll";
    const QByteArray line = "x   Dest filename: " + name + "\r\n";
    for (const int blocks : { 1, 2 }) {
        for (int shift = -3; shift < line.size() + 3; ++shift) {
            const qsizetype size = blocks * kBlock - shift;
            QByteArray after = fillerLines(size / 80 - 1);
            after += QByteArray(size - after.size() - 1, 'x') + '\n';
            const GrowingLog log;
            log.append(fillerLines(1) + line + after);
            QCOMPARE(LogTail(log.path()).readNewestFile(), QString::fromUtf8(name));
        }
    }
}

void TestLogTail::cost()
{
    if (bytesRead() < 0)
        QSKIP("the system does not count");
    const GrowingLog log;
    LogTail tail(log.path());
    log.append("Dest filename: a\n" + fillerLines(100'000));
    QCOMPARE(tail.readNewestFile(), u"a"_s);

    // Of a long log, what was appended is read.
    constexpr int kPolls = 50;
    qint64 before = bytesRead();
    for (int i = 0; i < kPolls; ++i) {
        const QByteArray name = QByteArray::number(i);
        log.append("Dest filename: " + name + '\n');
        QCOMPARE(tail.readNewestFile(), QString::fromLatin1(name));
        QCOMPARE(tail.readNewestFile(), u""_s);
    }
    QVERIFY(bytesRead() - before < kPolls * 100);

    // Of much that was appended, one block, if a name is in it.
    before = bytesRead();
    QCOMPARE(LogTail(log.path()).readNewestFile(), u"49"_s);
    QVERIFY(bytesRead() - before < 2 * kBlock);
}

void TestLogTail::overlongLine()
{
    for (const int length :
         { kBlock - 2, kBlock - 1, kBlock, kBlock + 1, 2 * kBlock - 1, 2 * kBlock, 40 * kBlock }) {
        const GrowingLog log;
        log.append("Dest filename: a\n" + QByteArray(length, 'x'));
        QCOMPARE(LogTail(log.path()).readNewestFile(), u"a"_s);
        log.append("\r\n");
        QCOMPARE(LogTail(log.path()).readNewestFile(), u"a"_s);
        log.append("Dest filename: b\nInstalling the file.\n");
        QCOMPARE(LogTail(log.path()).readNewestFile(), u"b"_s);
    }
}

QTEST_APPLESS_MAIN(TestLogTail)
#include "tst_logtail.moc"
