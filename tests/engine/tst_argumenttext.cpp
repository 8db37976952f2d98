#include "engine/argumenttext.h"
#include "support/sandbox.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestArgumentText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void received_data();
    void received();
};

void TestArgumentText::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestArgumentText::received_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("empty") << u""_s << QStringList();
    QTest::newRow("one") << u"/VERYSILENT"_s << QStringList { u"/VERYSILENT"_s };
    QTest::newRow("several") << u"/A /B  /C"_s << QStringList { u"/A"_s, u"/B"_s, u"/C"_s };
    QTest::newRow("quotes go") << uR"(/DIR="C:/a" /B)"_s << QStringList { u"/DIR=C:/a"_s, u"/B"_s };
    QTest::newRow("blanks in quotes stay")
        << uR"(/DIR=" a  b " /B)"_s << QStringList { u"/DIR= a  b "_s, u"/B"_s };
    QTest::newRow("empty value") << uR"(/TASKS="" /B)"_s << QStringList { u"/TASKS="_s, u"/B"_s };
    QTest::newRow("empty value at the end")
        << uR"(/B /TASKS="")"_s << QStringList { u"/B"_s, u"/TASKS="_s };
    QTest::newRow("switch in a value")
        << uR"(/DIR="a /LOG=x" /B)"_s << QStringList { u"/DIR=a /LOG=x"_s, u"/B"_s };
    QTest::newRow("percent, comma, apostrophe, dollar")
        << uR"(/DIR="a %2 %PATH% $HOME 'b' `c` *" /TASKS="a,b")"_s
        << QStringList { u"/DIR=a %2 %PATH% $HOME 'b' `c` *"_s, u"/TASKS=a,b"_s };
    QTest::newRow("single back-slashes stay")
        << uR"(/DIR="C:\Program Files\a" /B)"_s
        << QStringList { uR"(/DIR=C:\Program Files\a)"_s, u"/B"_s };
    QTest::newRow("other scripts") << u"/DIR=\"\u00e4 \u56de\u8def \U0001f50c\""_s
                                   << QStringList { u"/DIR=\u00e4 \u56de\u8def \U0001f50c"_s };
}

// Judged by what a real child process says that it got.
void TestArgumentText::received()
{
    QFETCH(const QString, text);
    Sandbox sandbox;
    sandbox.setScenario("finish-at-once = yes");
    QProcess process;
    process.setProgram(Sandbox::setupEngine());
    setArgumentText(process, text);
    process.start();
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
    const QList<QStringList> runs = sandbox.engineRuns();
    QCOMPARE(runs.size(), 1);
    QTEST(runs.first().mid(1), "arguments");
}

QTEST_GUILESS_MAIN(TestArgumentText)
#include "tst_argumenttext.moc"
