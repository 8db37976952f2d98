#include "engine/enginearguments.h"

#include <QDir>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestEngineArguments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void install_data();
    void install();
    void uninstall_data();
    void uninstall();
};

namespace {

QString native(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

} // namespace

void TestEngineArguments::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestEngineArguments::install_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QStringList>("tasks");
    QTest::addColumn<QString>("statusFile");
    QTest::addColumn<QString>("logFile");
    QTest::addColumn<QString>("arguments");

    const QString silent = u"/VERYSILENT /SUPPRESSMSGBOXES /NORESTART "_s;
    const QString folder = u"C:/Varnel Schematics"_s;
    const QString status = u"C:/Temp/s.ini"_s;
    const QString log = u"C:/Temp/s.ini.log"_s;
    const QString files =
        uR"( /STATUSFILE=")"_s + native(status) + uR"(" /LOG=")"_s + native(log) + u'"';
    const QString dir = uR"(/DIR=")"_s + native(folder) + u'"';

    QTest::newRow("no tasks") << folder << QStringList() << status << log
                              << silent + dir + uR"( /TASKS="")"_s + files;
    QTest::newRow("one task") << folder << QStringList { u"desktopicon"_s } << status << log
                              << silent + dir + uR"( /TASKS="desktopicon")"_s + files;
    QTest::newRow("three tasks") << folder
                                 << QStringList { u"desktopicon"_s, u"fileassoc"_s, u"path"_s }
                                 << status << log
                                 << silent + dir + uR"( /TASKS="desktopicon,fileassoc,path")"_s
            + files;
    QTest::newRow("nothing at all") << u""_s << QStringList() << u""_s << u""_s
                                    << silent + uR"(/DIR="" /TASKS="" /STATUSFILE="" /LOG="")"_s;
    QTest::newRow("markers in the folder")
        << u"a %2 b %1 c %3 %4 %%"_s << QStringList { u"t"_s } << u"s"_s << u"l"_s
        << silent + uR"(/DIR="a %2 b %1 c %3 %4 %%" /TASKS="t" /STATUSFILE="s" /LOG="l")"_s;
    QTest::newRow("markers everywhere")
        << u"%4%L1"_s << QStringList { u"%1"_s, u"%3"_s } << u"%2"_s << u"%1"_s
        << silent + uR"(/DIR="%4%L1" /TASKS="%1,%3" /STATUSFILE="%2" /LOG="%1")"_s;
    QTest::newRow("other scripts") << u"Schaltpl\u00e4ne \u56de\u8def \U0001f50c"_s << QStringList()
                                   << u"\u00fc.ini"_s << u"\u00fc.log"_s
                                   << silent
            + u"/DIR=\"Schaltpl\u00e4ne \u56de\u8def \U0001f50c\" /TASKS=\"\" "_s
              u"/STATUSFILE=\"\u00fc.ini\" /LOG=\"\u00fc.log\""_s;
    QTest::newRow("blanks stay") << u" a  b "_s << QStringList() << u" s "_s << u" l "_s
                                 << silent
            + uR"(/DIR=" a  b " /TASKS="" /STATUSFILE=" s " /LOG=" l ")"_s;
}

void TestEngineArguments::install()
{
    QFETCH(const QString, folder);
    QFETCH(const QStringList, tasks);
    QFETCH(const QString, statusFile);
    QFETCH(const QString, logFile);
    QTEST(installArguments(folder, tasks, statusFile, logFile), "arguments");
}

void TestEngineArguments::uninstall_data()
{
    QTest::addColumn<QString>("statusFile");
    const QString silent = u"/VERYSILENT /SUPPRESSMSGBOXES /NORESTART "_s;
    QTest::addColumn<QString>("arguments");
    QTest::newRow("path") << u"C:/Temp/s.ini"_s
                          << silent + uR"(/STATUSFILE=")"_s + native(u"C:/Temp/s.ini"_s) + u'"';
    QTest::newRow("marker") << u"a %1 b %2"_s << silent + uR"(/STATUSFILE="a %1 b %2")"_s;
    QTest::newRow("empty") << u""_s << silent + uR"(/STATUSFILE="")"_s;
}

void TestEngineArguments::uninstall()
{
    QFETCH(const QString, statusFile);
    QTEST(uninstallArguments(statusFile), "arguments");
}

QTEST_APPLESS_MAIN(TestEngineArguments)
#include "tst_enginearguments.moc"
