#include "engine/bracketlanguage.h"
#include "engine/exitcode.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QTest>

#include <limits>

using namespace Qt::Literals::StringLiterals;

class TestExitCode : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void message_data();
    void message();
    void translation_data();
    void translation();
};

void TestExitCode::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestExitCode::message_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("message");
    QTest::newRow("1") << 1 << u"Setup could not start."_s;
    QTest::newRow("2") << 2 << u"Installation was cancelled."_s;
    QTest::newRow("3") << 3 << u"Setup failed while preparing to install."_s;
    QTest::newRow("4") << 4 << u"A fatal error occurred during installation."_s;
    QTest::newRow("5") << 5 << u"Installation was cancelled during setup."_s;
    QTest::newRow("6") << 6 << u"Setup was stopped by a debugger."_s;
    QTest::newRow("7") << 7 << u"Setup cannot install on this system."_s;
    QTest::newRow("8") << 8 << u"A restart is required before setup can continue."_s;

    QTest::newRow("0, as after a crash") << 0 << u"Setup exited with code 0."_s;
    QTest::newRow("9") << 9 << u"Setup exited with code 9."_s;
    QTest::newRow("10") << 10 << u"Setup exited with code 10."_s;
    QTest::newRow("255") << 255 << u"Setup exited with code 255."_s;
    QTest::newRow("a thousand") << 1000 << u"Setup exited with code 1000."_s;
    QTest::newRow("-1") << -1 << u"Setup exited with code -1."_s;
    QTest::newRow("-8") << -8 << u"Setup exited with code -8."_s;
    QTest::newRow("access violation")
        << int(0xC0000005) << u"Setup exited with code -1073741819."_s;
    QTest::newRow("least") << std::numeric_limits<int>::min()
                           << u"Setup exited with code -2147483648."_s;
    QTest::newRow("greatest") << std::numeric_limits<int>::max()
                              << u"Setup exited with code 2147483647."_s;
}

void TestExitCode::message()
{
    QFETCH(const int, code);
    QTEST(exitCodeMessage(code), "message");
}

void TestExitCode::translation_data()
{
    message_data();
}

void TestExitCode::translation()
{
    QFETCH(const int, code);
    QFETCH(const QString, message);
    BracketLanguage language;
    QVERIFY(QCoreApplication::installTranslator(&language));
    QCOMPARE(exitCodeMessage(code), u'[' + message + u']');
}

QTEST_GUILESS_MAIN(TestExitCode)
#include "tst_exitcode.moc"
