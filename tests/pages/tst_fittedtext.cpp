#include "pages/fittedtext.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kReason = u"Setup could not start.  There is no room."_s;
const QString kLog = uR"(C:\Users\Ada\AppData\Local\Temp\varnel_setup_last.log)"_s;

/// Room for lines of so many characters, as the labels break them.
HasRoom room(qsizetype columns, int lines)
{
    return [columns, lines](const QString &text) { return text.size() <= columns * lines; };
}

} // namespace

class TestFittedText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void middle_data();
    void middle();
    void finding_data();
    void finding();
    void message_data();
    void message();
    void lettersStayWhole();
    void endlessTextIsMeasuredInParts();
    void pathBreaks_data();
    void pathBreaks();
};

void TestFittedText::middle_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("shown");
    const QString path = uR"(C:\Program Files\Varnel)"_s; // 23
    QTest::newRow("fits exactly") << path << 23 << path;
    QTest::newRow("one too long") << path << 22 << uR"(C:\Program …les\Varnel)"_s;
    QTest::newRow("two characters") << path << 2 << u"C…"_s;
    QTest::newRow("one character") << path << 1 << u"…"_s;
    QTest::newRow("no room at all") << path << 0 << u"…"_s;
}

void TestFittedText::middle()
{
    QFETCH(QString, text);
    QFETCH(int, columns);
    QTEST(shortenMiddle(text, room(columns, 1)), "shown");
}

void TestFittedText::finding_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("shown");
    const QString space = uR"(220 MB required · 95.3 GB free on \\server\share)"_s; // 48
    QTest::newRow("fits") << space << 48 << space;
    QTest::newRow("long volume") << space << 44
                                 << uR"(220 MB required · 95.3 GB free on \\ser…hare)"_s;
    QTest::newRow("no volume") << space << 35 << u"220 MB required · 95.3 GB free on …"_s;
    QTest::newRow("not even figures") << space << 12 << uR"(220 MB…share)"_s;
    QTest::newRow("a volume called like the figure")
        << uR"(1 free on \\a free on b)"_s << 17 << uR"(1 free on \\a…n b)"_s;
    QTest::newRow("no volume in it")
        << u"Windows 10 Enterprise — unsupported"_s << 25 << u"Windows 10 E… unsupported"_s;
}

void TestFittedText::finding()
{
    QFETCH(QString, text);
    QFETCH(int, columns);
    QTEST(shortenFinding(text, room(columns, 1)), "shown");
}

void TestFittedText::message_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("lines");
    QTest::addColumn<QString>("shown");
    const QString log = u"  (log: "_s + kLog + u")";
    QTest::newRow("fits exactly") << kReason + log << 103 << 1 << kReason + log;
    QTest::newRow("one too long") << kReason + log << 102 << 1
                                  << u"Setup could not start.  There is no roo…" + log;
    QTest::newRow("long reason") << kReason + log << 40 << 2 << u"Setup could not s…" + log;
    QTest::newRow("no blank before the ellipsis")
        << kReason + log << 75 << 1 << u"Setup could…" + log;
    QTest::newRow("no reason") << kReason + log << 63 << 1 << u"…" + log;
    QTest::newRow("long path") << kReason + log << 10 << 3
                               << uR"(…  (log: C:\Users\A…_last.log))"_s;
    QTest::newRow("path in the reason too")
        << u"Cannot open (log: a).  Give up." + log << 39 << 2 << u"Cannot open (lo…" + log;
    QTest::newRow("only a path, fits") << u"Log: "_s + kLog << 60 << 1 << u"Log: "_s + kLog;
    QTest::newRow("only a path") << u"Log: "_s + kLog << 30 << 1
                                 << uR"(Log: C:\Users\Ada…tup_last.log)"_s;
    QTest::newRow("a path without a reason") << u"Setup could not start.  Log: "_s + kLog << 30 << 1
                                             << uR"(…  Log: C:\Users\Ad…p_last.log)"_s;
    QTest::newRow("no path") << kReason << 25 << 1 << u"Setup could not start.…"_s;
    QTest::newRow("no room at all") << kReason << 0 << 1 << u"…"_s;
}

void TestFittedText::message()
{
    QFETCH(QString, text);
    QFETCH(int, columns);
    QFETCH(int, lines);
    QTEST(shortenMessage(text, room(columns, lines)), "shown");
}

// Neither half a surrogate pair nor a letter without its accent.
void TestFittedText::lettersStayWhole()
{
    const QString text = u"\U0001F4C1e\u0301"_s.repeated(10);
    for (int columns = 1; columns < text.size(); ++columns) {
        const QString shown = shortenMiddle(text, room(columns, 1));
        const QStringList halves = shown.split(u'…');
        QCOMPARE(halves.size(), 2);
        QVERIFY2(halves[0].isEmpty() || !halves[0].back().isHighSurrogate(), qPrintable(shown));
        QVERIFY2(!halves[0].endsWith(u'e'), qPrintable(shown));
        QVERIFY2(halves[1].isEmpty()
                     || (!halves[1].front().isLowSurrogate() && halves[1].front() != u'\u0301'),
                 qPrintable(shown));
    }
}

void TestFittedText::endlessTextIsMeasuredInParts()
{
    const QString text(1'000'000, u'm');
    for (const Shorten shorten : { shortenMiddle, shortenFinding, shortenMessage }) {
        qsizetype longest = 0;
        const QString shown = shorten(text, [&longest](const QString &part) {
            longest = qMax(longest, part.size());
            return part.size() <= 700;
        });
        QCOMPARE(shown.size(), 700);
        QVERIFY2(longest < 10'000, qPrintable(QString::number(longest)));
    }
}

void TestFittedText::pathBreaks_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("broken"); // "|" where a line may break, "&" where it may not
    QTest::newRow("no path") << u"Setup could not start."_s << u"Setup could not start."_s;
    QTest::newRow("drive") << uR"(in C:\a\b)"_s << uR"(in C:&\|a&\|b)"_s;
    QTest::newRow("share") << uR"(on \\server\share)"_s << uR"(on \\|server&\|share)"_s;
    QTest::newRow("at the end") << uR"(C:\)"_s << uR"(C:&\)"_s;
}

void TestFittedText::pathBreaks()
{
    QFETCH(QString, text);
    QFETCH(QString, broken);
    QCOMPARE(withPathBreaks(text), broken.replace(u'|', u'\u200b').replace(u'&', u'\ufeff'));
}

QTEST_APPLESS_MAIN(TestFittedText)
#include "tst_fittedtext.moc"
