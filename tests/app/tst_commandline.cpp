#include "app/commandline.h"
#include "app/qtvariables.h"
#include "support/stricttest.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

constexpr int kUndecided = -1;

class TestCommandLine : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void parse_data();
    void parse();
    void removesVariablesOfQt();
};

void TestCommandLine::parse_data()
{
    QTest::addColumn<QStringList>("arguments"); // what follows the program
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QString>("uninstaller");
    const int install = 0;
    const int update = 1;
    const int uninstall = 2;
    const QString none;
    const auto row = [](const char *name, const QStringList &arguments, int mode,
                        const QString &setup, const QString &uninstaller) {
        QTest::newRow(name) << arguments << mode << setup << uninstaller;
    };

    row("nothing", {}, kUndecided, none, none);
    row("update", { u"--update"_s }, update, none, none);
    row("all three", { u"--install"_s, u"--update"_s, u"--uninstall"_s }, uninstall, none, none);
    row("engine", { u"--setup-exe"_s, u"/a/setup.exe"_s }, kUndecided, u"/a/setup.exe"_s, none);
    row("uninstaller, any case", { u"--UNINSTALLER"_s, u"x"_s }, kUndecided, none, u"x"_s);
    row("mode last", { u"--setup-exe"_s, u"s"_s, u"--uninstaller"_s, u"u"_s, u"--install"_s },
        install, u"s"_s, u"u"_s);
    row("path as it stands", { u"--setup-exe"_s, uR"( C:\Мой каталог\"set up" %1.exe )"_s },
        kUndecided, uR"( C:\Мой каталог\"set up" %1.exe )"_s, none);

    row("engine last", { u"--install"_s, u"--setup-exe"_s }, install, none, none);
    row("first engine counts", { u"--setup-exe"_s, u"a"_s, u"--setup-exe"_s, u"b"_s }, kUndecided,
        u"a"_s, none);
    row("an option as value", { u"--setup-exe"_s, u"--uninstaller"_s, u"u"_s }, kUndecided,
        u"--uninstaller"_s, u"u"_s);
    row("a mode as value", { u"--setup-exe"_s, u"--update"_s }, update, u"--update"_s, none);

    row("unknown among known", { u"x"_s, u"--setup-exe"_s, u"s"_s, u"--y"_s, u"--update"_s },
        update, u"s"_s, none);
    row("like an option",
        { u"-update"_s, u"--un"_s, u"--updates"_s, u"--setup-exe2"_s, u"s"_s, u"--unınstall"_s },
        kUndecided, none, none);
}

void TestCommandLine::parse()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const int, mode);
    QFETCH(const QString, setup);
    QFETCH(const QString, uninstaller);
    const auto check = [&](const QString &program) {
        const CommandLine commandLine = parseCommandLine(QStringList { program } + arguments);
        QCOMPARE(commandLine.runMode ? int(*commandLine.runMode) : kUndecided, mode);
        QCOMPARE(commandLine.setupExecutable, setup);
        QCOMPARE(commandLine.uninstaller, uninstaller);
    };
    check(u"/opt/VarnelSetup"_s);
    // The name of the program is no option.
    check(u"--uninstall"_s);
}

void TestCommandLine::removesVariablesOfQt()
{
    qputenv("QT_PLUGIN_PATH", "/somewhere");
    qputenv("qt_scale_factor", "2"); // one and the same on Windows, whatever its case
    qputenv("QTDIR", "/usr");
    removeQtVariables();
    QVERIFY(!qEnvironmentVariableIsSet("QT_PLUGIN_PATH"));
    QVERIFY(!qEnvironmentVariableIsSet("qt_scale_factor"));
    QVERIFY(qEnvironmentVariableIsSet("QTDIR"));
}

QTEST_APPLESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
