#include "engine/argumenttext.h"
#include "engine/bracketlanguage.h"
#include "engine/enginearguments.h"
#include "engine/exitcode.h"
#include "engine/statusfile.h"
#include "support/sandbox.h"
#include "support/stricttest.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QProcess>
#include <QScopeGuard>
#include <QTest>

#include <limits>

using namespace Qt::Literals::StringLiterals;

// What the engine program is given on its command line, and what its status file and exit code
// mean.
class TestEngineProtocol : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void arguments_data();
    void arguments();
    void receivedArguments();
    void exitCode_data();
    void exitCode();
    void statusFile_data();
    void statusFile();
    void progress_data();
    void progress();
};

namespace {

constexpr double kNone = -1; ///< stands for "no fraction" in a table

QString native(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

double fractionOf(const StatusFile &report)
{
    return report.fraction.value_or(kNone);
}

} // namespace

void TestEngineProtocol::arguments_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QStringList>("tasks");
    QTest::addColumn<QString>("statusFile");
    QTest::addColumn<QString>("taskText");
    QTest::newRow("tasks") << u"C:/a b"_s << QStringList { u"desktopicon"_s, u"path"_s }
                           << u"C:/Temp/s.ini"_s << u"desktopicon,path"_s;
    QTest::newRow("nothing at all") << u""_s << QStringList() << u""_s << u""_s;
    QTest::newRow("markers, other scripts and blanks")
        << u" %4%L1 %2  %% \u56de "_s << QStringList { u"%1"_s, u"%3"_s } << u" %2 \u00fc "_s
        << u"%1,%3"_s;
}

void TestEngineProtocol::arguments()
{
    QFETCH(const QString, folder);
    QFETCH(const QStringList, tasks);
    QFETCH(const QString, statusFile);
    QFETCH(const QString, taskText);
    const QString log = statusFile + u"/%1.log"_s;
    const QString silent = u"/VERYSILENT /SUPPRESSMSGBOXES /NORESTART "_s;
    const QString status = uR"(/STATUSFILE=")"_s + native(statusFile) + u'"';
    QCOMPARE(installArguments(folder, tasks, statusFile, log),
             silent + uR"(/DIR=")"_s + native(folder) + uR"(" /TASKS=")"_s + taskText + uR"(" )"_s
                 + status + uR"( /LOG=")"_s + native(log) + u'"');
    QCOMPARE(uninstallArguments(statusFile), silent + status);
}

// As a real child process has received them.
void TestEngineProtocol::receivedArguments()
{
    Sandbox sandbox;
    sandbox.setScenario("finish-at-once = yes");
    QProcess process;
    process.setProgram(Sandbox::setupEngine());
    setArgumentText(process,
                    u"/A  /DIR=\" a  /LOG=x %2 %PATH% $HOME 'b' `c` * \u00e4 \u56de \U0001f50c\" "
                    u"/LOG=\"C:\\Program Files\\a\" /TASKS=\"\" /B=\"a,b\""_s);
    process.start();
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
    const QList<QStringList> runs = sandbox.engineRuns();
    QCOMPARE(runs.size(), 1);
    const QStringList received {
        u"/A"_s,
        u"/DIR= a  /LOG=x %2 %PATH% $HOME 'b' `c` * \u00e4 \u56de \U0001f50c"_s,
        u"/LOG=C:\\Program Files\\a"_s,
        u"/TASKS="_s,
        u"/B=a,b"_s,
    };
    QCOMPARE(runs.first().mid(1), received);
}

void TestEngineProtocol::exitCode_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("message");
    const auto row = [](int code, const QString &message) {
        QTest::addRow("%d", code) << code << message;
    };
    row(1, u"Setup could not start."_s);
    row(2, u"Installation was cancelled."_s);
    row(3, u"Setup failed while preparing to install."_s);
    row(4, u"A fatal error occurred during installation."_s);
    row(5, u"Installation was cancelled during setup."_s);
    row(6, u"Setup was stopped by a debugger."_s);
    row(7, u"Setup cannot install on this system."_s);
    row(8, u"A restart is required before setup can continue."_s);
    for (const int code :
         { 0, 9, 255, -1, -8, std::numeric_limits<int>::min(), std::numeric_limits<int>::max() })
        row(code, u"Setup exited with code %1."_s.arg(code));
}

void TestEngineProtocol::exitCode()
{
    QFETCH(const int, code);
    QFETCH(const QString, message);
    QCOMPARE(exitCodeMessage(code), message);
    BracketLanguage language;
    QVERIFY(QCoreApplication::installTranslator(&language));
    QCOMPARE(exitCodeMessage(code), u'[' + message + u']');
}

void TestEngineProtocol::statusFile_data()
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
    row("other order, no section, no final line break", "status=Copying\nfile=f\nprogress=1", 0.01,
        u"f"_s, u"Copying"_s);
    row("CRLF", "[status]\r\nprogress=42.5\r\nfile=f\r\nstatus=s\r\n", 0.425, u"f"_s, u"s"_s);
    row("byte-order mark", "\xEF\xBB\xBFprogress=42.5\nfile=f\n", 0.425, u"f"_s, u""_s);
    row("byte-order mark, section", "\xEF\xBB\xBF[progress=5\nstatus=s\n", kNone, u""_s, u"s"_s);
    row("part of a byte-order mark", "\xEF\xBB", kNone, u""_s, u""_s);

    row("any section", "[Whatever]\nprogress=5\n[Other]\nstatus=s\n", 0.05, u""_s, u"s"_s);
    row("section with a key in it", "[progress=90]\n  [ file=x\n", kNone, u""_s, u""_s);
    row("empty lines", "\n\n  \n\t\nprogress=5\n\n\r\n\nstatus=s\n\n", 0.05, u""_s, u"s"_s);
    row("blanks around =", "progress = 12\n file\t=\tf \n  status  =  s  \n", 0.12, u"f"_s, u"s"_s);
    row("value with =", "status=a=b = c\nfile==x\n", kNone, u"=x"_s, u"a=b = c"_s);
    row("no =", "progress\nfile f\nstatus: s\n", kNone, u""_s, u""_s);
    row("= first", "=progress=5\n = file=f\n=\n", kNone, u""_s, u""_s);
    row("empty values", "progress=\nfile=\t\nstatus=  \r\n", kNone, u""_s, u""_s);
    row("value as it stands", "status=\"a  b\tc %1\"\n", kNone, u""_s, u"\"a  b\tc %1\""_s);
    row("keys in capitals", "Progress=5\nFILE=f\nStatus=s\n", kNone, u""_s, u""_s);
    row("other keys", "progress2=5\nxfile=f\nstatus text=s\n;progress=5\n", kNone, u""_s, u""_s);
    row("later line wins", "progress=7\nprogress=5\n[b]\nfile=a\nfile=b\nstatus=c\nstatus=d\n",
        0.05, u"b"_s, u"d"_s);
    row("later empty line wins", "progress=5\nprogress=\nfile=a\nfile=\nstatus=b\nstatus=\n", kNone,
        u""_s, u""_s);
    row("UTF-8", "file=C:\\Schaltpl\xC3\xA4ne\\\xE5\x9B\x9E.sch\nstatus=Extracting\xE2\x80\xA6\n",
        kNone, u"C:\\Schaltpl\u00e4ne\\\u56de.sch"_s, u"Extracting\u2026"_s);
    row("not UTF-8", "progress=5\nfile=a\xE4z\n", 0.05, u"a\ufffdz"_s, u""_s);
    row("no-break space around", "status\xC2\xA0=\xC2\xA0s\xC2\xA0\n", kNone, u""_s, u"s"_s);
    row("zero bytes", QByteArray("progress=5\n\0\0\0\0status=s\n", 24), 0.05, u""_s, u""_s);
}

void TestEngineProtocol::statusFile()
{
    QFETCH(const QByteArray, text);
    const StatusFile report = parseStatusFile(text);
    QTEST(fractionOf(report), "fraction");
    QTEST(report.file, "file");
    QTEST(report.status, "status");
}

void TestEngineProtocol::progress_data()
{
    QTest::addColumn<QByteArray>("percent");
    QTest::addColumn<double>("fraction");
    const auto row = [](const QByteArray &percent, double fraction) {
        QTest::newRow(percent) << percent << fraction;
    };
    row("0", 0.0);
    row("0.01", 0.0001);
    row("99.999", 0.99999);
    row("100", 1.0);
    row("100.001", 1.0);
    row("-5", 0.0);
    row("+50", 0.5);
    row("007", 0.07);
    row(".5", 0.005);
    row("2.5e1", 0.25);
    row("nan", 0.0);
    row("inf", 1.0);
    row("-inf", 0.0);
    for (const char *word : { "42,5", "1,000", "abc", "42%", "42 43", "4.2.5", "0x10", "-", ".",
                              "\"42\"", "\xD9\xA4\xD9\xA2" })
        row(word, kNone);
}

// Whatever the user's language.
void TestEngineProtocol::progress()
{
    QFETCH(const QByteArray, percent);
    QFETCH(const double, fraction);
    const QByteArray text = "progress=" + percent + '\n';
    const auto restore = qScopeGuard([before = QLocale()] { QLocale::setDefault(before); });
    for (const QLocale &locale : { QLocale(), QLocale(QLocale::German, QLocale::Germany) }) {
        QLocale::setDefault(locale);
        QCOMPARE(fractionOf(parseStatusFile(text)), fraction);
    }
}

QTEST_GUILESS_MAIN(TestEngineProtocol)
#include "tst_engineprotocol.moc"
