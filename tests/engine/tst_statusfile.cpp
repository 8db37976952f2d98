#include "engine/statusfile.h"

#include <QLocale>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestStatusFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void content_data();
    void content();
    void number_data();
    void number();
    void numberInAnotherLocale_data();
    void numberInAnotherLocale();
    void anyBeginningIsReadable();
    void unterminatedView();
};

namespace {

constexpr double kNone = -1; ///< stands for "no fraction" in a table

double fractionOf(const StatusFile &report)
{
    return report.fraction.value_or(kNone);
}

} // namespace

void TestStatusFile::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestStatusFile::content_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<double>("fraction");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("status");
    const auto row = [](const char *name, const QByteArray &text, double fraction,
                        const QString &file, const QString &status) {
        QTest::newRow(name) << text << fraction << file << status;
    };

    row("empty", "", kNone, u""_s, u""_s);
    row("all three", "[status]\nprogress=42.5\nfile=C:\\a b.dll\nstatus=Copying\n", 0.425,
        uR"(C:\a b.dll)"_s, u"Copying"_s);
    row("other order", "status=Copying\nfile=f\nprogress=1\n", 0.01, u"f"_s, u"Copying"_s);
    row("CRLF", "[status]\r\nprogress=42.5\r\nfile=f\r\nstatus=s\r\n", 0.425, u"f"_s, u"s"_s);
    row("no final line break", "progress=42.5\nfile=f\nstatus=s", 0.425, u"f"_s, u"s"_s);
    row("byte-order mark", "\xEF\xBB\xBFprogress=42.5\nfile=f\n", 0.425, u"f"_s, u""_s);
    row("byte-order mark, section", "\xEF\xBB\xBF[status]\nprogress=42.5\n", 0.425, u""_s, u""_s);
    row("byte-order mark alone", "\xEF\xBB\xBF", kNone, u""_s, u""_s);
    row("part of a byte-order mark", "\xEF\xBB", kNone, u""_s, u""_s);

    row("no section", "progress=5\n", 0.05, u""_s, u""_s);
    row("any section", "[Whatever]\nprogress=5\n[Other]\nstatus=s\n", 0.05, u""_s, u"s"_s);
    row("section without end", "[status\nprogress=5\n", 0.05, u""_s, u""_s);
    row("section with a key in it", "[progress=90]\n[ file=x\n", kNone, u""_s, u""_s);
    row("indented section", "  [progress=90\nprogress=5\n", 0.05, u""_s, u""_s);
    row("empty lines", "\n\n  \n\t\nprogress=5\n\n\r\n\nstatus=s\n\n", 0.05, u""_s, u"s"_s);
    row("only line breaks", "\n\r\n\n", kNone, u""_s, u""_s);

    row("blanks around =", "progress = 12\n file\t=\tf \n  status  =  s  \n", 0.12, u"f"_s, u"s"_s);
    row("value with =", "status=a=b = c\nfile==x\n", kNone, u"=x"_s, u"a=b = c"_s);
    row("no =", "progress\nfile f\nstatus: s\n", kNone, u""_s, u""_s);
    row("= first", "=progress=5\n = file=f\n=\n", kNone, u""_s, u""_s);
    row("empty values", "progress=\nfile=\nstatus=\n", kNone, u""_s, u""_s);
    row("blank values", "progress= \nfile=\t\nstatus=  \r\n", kNone, u""_s, u""_s);
    row("blanks inside stay", "status=a  b\tc\n", kNone, u""_s, u"a  b\tc"_s);
    row("quotes stay", "status=\"a\"\n", kNone, u""_s, u"\"a\""_s);
    row("markers stay", "status=%1 %2\n", kNone, u""_s, u"%1 %2"_s);

    row("keys in capitals", "Progress=5\nFILE=f\nStatus=s\n", kNone, u""_s, u""_s);
    row("longer keys", "progress2=5\nxfile=f\nstatus text=s\n", kNone, u""_s, u""_s);
    row("other keys", "speed=5\nprogress=6\neta=7\n", 0.06, u""_s, u""_s);
    row("comment-like line", ";progress=5\n#file=f\n//status=s\n", kNone, u""_s, u""_s);

    row("later line wins", "progress=5\nprogress=7\nfile=a\nfile=b\nstatus=c\nstatus=d\n", 0.07,
        u"b"_s, u"d"_s);
    row("later line wins though smaller", "progress=7\nprogress=5\n", 0.05, u""_s, u""_s);
    row("later line wins across sections", "[a]\nprogress=7\n[b]\nprogress=5\n", 0.05, u""_s,
        u""_s);
    row("later empty line wins", "progress=5\nprogress=\nfile=a\nfile=\nstatus=b\nstatus=\n", kNone,
        u""_s, u""_s);
    row("later bad number wins", "progress=5\nprogress=abc\n", kNone, u""_s, u""_s);
    row("later good number wins", "progress=abc\nprogress=5\n", 0.05, u""_s, u""_s);

    row("UTF-8", "file=C:\\Schaltpl\xC3\xA4ne\\\xE5\x9B\x9E.sch\nstatus=Extracting\xE2\x80\xA6\n",
        kNone, u"C:\\Schaltpl\u00e4ne\\\u56de.sch"_s, u"Extracting\u2026"_s);
    row("not UTF-8", "progress=5\nfile=a\xE4z\n", 0.05, u"a\ufffdz"_s, u""_s);
    row("cut inside a letter", "progress=5\nstatus=Extracting\xE2\x80", 0.05, u""_s,
        QString::fromUtf8("Extracting\xE2\x80"));
    row("no-break space around", "status\xC2\xA0=\xC2\xA0s\xC2\xA0\n", kNone, u""_s, u"s"_s);
    row("zero bytes", QByteArray("progress=5\n\0\0\0\0status=s\n", 24), 0.05, u""_s, u""_s);
}

void TestStatusFile::content()
{
    QFETCH(const QByteArray, text);
    const StatusFile report = parseStatusFile(text);
    QTEST(fractionOf(report), "fraction");
    QTEST(report.file, "file");
    QTEST(report.status, "status");
}

void TestStatusFile::number_data()
{
    QTest::addColumn<QByteArray>("percent");
    QTest::addColumn<double>("fraction");
    QTest::newRow("0") << QByteArray("0") << 0.0;
    QTest::newRow("100") << QByteArray("100") << 1.0;
    QTest::newRow("fraction of a percent") << QByteArray("0.01") << 0.0001;
    QTest::newRow("nearly done") << QByteArray("99.999") << 0.99999;
    QTest::newRow("just beyond") << QByteArray("100.001") << 1.0;
    QTest::newRow("far beyond") << QByteArray("150") << 1.0;
    QTest::newRow("negative") << QByteArray("-5") << 0.0;
    QTest::newRow("negative zero") << QByteArray("-0") << 0.0;
    QTest::newRow("sign") << QByteArray("+50") << 0.5;
    QTest::newRow("leading zeros") << QByteArray("007") << 0.07;
    QTest::newRow("point first") << QByteArray(".5") << 0.005;
    QTest::newRow("point last") << QByteArray("5.") << 0.05;
    QTest::newRow("exponent") << QByteArray("2.5e1") << 0.25;
    QTest::newRow("nan") << QByteArray("nan") << 0.0;
    QTest::newRow("inf") << QByteArray("inf") << 1.0;
    QTest::newRow("-inf") << QByteArray("-inf") << 0.0;

    QTest::newRow("comma") << QByteArray("42,5") << kNone;
    QTest::newRow("thousands") << QByteArray("1,000") << kNone;
    QTest::newRow("word") << QByteArray("abc") << kNone;
    QTest::newRow("percent sign") << QByteArray("42%") << kNone;
    QTest::newRow("two numbers") << QByteArray("42 43") << kNone;
    QTest::newRow("two points") << QByteArray("4.2.5") << kNone;
    QTest::newRow("hexadecimal") << QByteArray("0x10") << kNone;
    QTest::newRow("sign alone") << QByteArray("-") << kNone;
    QTest::newRow("point alone") << QByteArray(".") << kNone;
    QTest::newRow("quoted") << QByteArray("\"42\"") << kNone;
    QTest::newRow("digits of another script") << QByteArray("\xD9\xA4\xD9\xA2") << kNone;
}

void TestStatusFile::number()
{
    QFETCH(const QByteArray, percent);
    QFETCH(const double, fraction);
    const QByteArray text = "progress=" + percent + '\n';
    const StatusFile report = parseStatusFile(text);
    QCOMPARE(report.fraction.has_value(), fraction != kNone);
    QCOMPARE(fractionOf(report), fraction);
}

void TestStatusFile::numberInAnotherLocale_data()
{
    number_data();
}

void TestStatusFile::numberInAnotherLocale()
{
    const QLocale before;
    const auto restore = qScopeGuard([&before] { QLocale::setDefault(before); });
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    number();
}

// The file may be read while it is being written, so at any length of its text.
void TestStatusFile::anyBeginningIsReadable()
{
    const QByteArray text = "\xEF\xBB\xBF[status]\r\nprogress=42.5\r\nfile=C:\\\xC3\xA4.dll\r\n"
                            "status=Extracting\xE2\x80\xA6\r\n";
    const QList<double> fractions { kNone, 0.04, 0.42, 0.425 };
    double last = kNone;
    for (qsizetype size = 0; size <= text.size(); ++size) {
        const StatusFile report = parseStatusFile(QByteArrayView(text).first(size));
        QVERIFY2(fractions.contains(fractionOf(report)), text.first(size).constData());
        QVERIFY(fractionOf(report) >= last);
        last = fractionOf(report);
        QVERIFY(u"C:\\\u00e4.dll"_s.startsWith(QString(report.file).remove(u'\ufffd')));
        QVERIFY(u"Extracting\u2026"_s.startsWith(QString(report.status).remove(u'\ufffd')));
    }
    QCOMPARE(last, 0.425);
}

void TestStatusFile::unterminatedView()
{
    const QByteArray text = "progress=42.5\nstatus=Copying files";
    const StatusFile report = parseStatusFile(QByteArrayView(text).first(text.indexOf(" files")));
    QCOMPARE(fractionOf(report), 0.425);
    QCOMPARE(report.status, u"Copying"_s);
}

QTEST_APPLESS_MAIN(TestStatusFile)
#include "tst_statusfile.moc"
