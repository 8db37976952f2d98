#include "pages/fittedtext.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kReason = u"Setup could not start.  There is no room."_s;
const QString kLog = uR"(C:\Users\Ada\AppData\Local\Temp\varnel_setup_last.log)"_s;

HasRoom roomFor(qsizetype characters)
{
    return [characters](const QString &text) { return text.size() <= characters; };
}

} // namespace

class TestFittedText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shortened_data();
    void shortened();
    void lettersStayWhole();
    void endlessTextIsMeasuredInParts();
    void pathBreaks_data();
    void pathBreaks();
};

void TestFittedText::shortened_data()
{
    QTest::addColumn<Shorten>("shorten");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("room"); // characters
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *name, Shorten shorten, const QString &text, int room,
                        const QString &shown) {
        QTest::newRow(name) << shorten << text << room << shown;
    };
    const QString path = uR"(C:\Program Files\Varnel)"_s; // 23
    row("fits exactly", shortenMiddle, path, 23, path);
    row("one too long", shortenMiddle, path, 22, uR"(C:\Program …les\Varnel)"_s);
    row("two characters", shortenMiddle, path, 2, u"C…"_s);
    row("no room at all", shortenMiddle, path, 0, u"…"_s);

    const QString space = uR"(220 MB required · 95.3 GB free on \\server\share)"_s; // 48
    row("finding, fits", shortenFinding, space, 48, space);
    row("long volume", shortenFinding, space, 44,
        uR"(220 MB required · 95.3 GB free on \\ser…hare)"_s);
    row("no volume", shortenFinding, space, 35, u"220 MB required · 95.3 GB free on …"_s);
    row("not even figures", shortenFinding, space, 12, uR"(220 MB…share)"_s);
    row("a volume called like the figure", shortenFinding, uR"(1 free on \\a free on b)"_s, 17,
        uR"(1 free on \\a…n b)"_s);
    row("no volume in it", shortenFinding, u"Windows 10 Enterprise — unsupported"_s, 25,
        u"Windows 10 E… unsupported"_s);

    const QString log = u"  (log: "_s + kLog + u")";
    row("message, fits exactly", shortenMessage, kReason + log, 103, kReason + log);
    row("message, one too long", shortenMessage, kReason + log, 102,
        u"Setup could not start.  There is no roo…" + log);
    row("no blank before the ellipsis", shortenMessage, kReason + log, 75, u"Setup could…" + log);
    row("no reason", shortenMessage, kReason + log, 63, u"…" + log);
    row("long path", shortenMessage, kReason + log, 30, uR"(…  (log: C:\Users\A…_last.log))"_s);
    row("path in the reason too", shortenMessage, u"Cannot open (log: a).  Give up." + log, 78,
        u"Cannot open (lo…" + log);
    row("only a path", shortenMessage, u"Log: "_s + kLog, 30,
        uR"(Log: C:\Users\Ada…tup_last.log)"_s);
    row("a path without a reason", shortenMessage, u"Setup could not start.  Log: "_s + kLog, 30,
        uR"(…  Log: C:\Users\Ad…p_last.log)"_s);
    row("no path", shortenMessage, kReason, 25, u"Setup could not start.…"_s);
}

void TestFittedText::shortened()
{
    QFETCH(Shorten, shorten);
    QFETCH(QString, text);
    QFETCH(int, room);
    QTEST(shorten(text, roomFor(room)), "shown");
}

// Neither half a surrogate pair nor a letter without its accent.
void TestFittedText::lettersStayWhole()
{
    const QString text = u"\U0001F4C1e\u0301"_s.repeated(10);
    for (int columns = 1; columns < text.size(); ++columns) {
        const QString shown = shortenMiddle(text, roomFor(columns));
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
