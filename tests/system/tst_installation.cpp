#include "support/environment.h"
#include "support/sandbox.h"
#include "support/stricttest.h"
#include "system/installation.h"
#include "system/registry.h"

#include <QDir>
#include <QJsonArray>
#include <QTest>

#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kMachine =
    uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\)"
    uR"({4F1C2A77-0B3D-4E52-9A61-7C2E8D90B4F3}_is1)"_s;
const QString kMachine32 =
    uR"(HKEY_LOCAL_MACHINE\SOFTWARE\WOW6432Node\Microsoft\Windows\CurrentVersion\Uninstall\)"
    uR"({4F1C2A77-0B3D-4E52-9A61-7C2E8D90B4F3}_is1)"_s;
const QString kUser = uR"(HKEY_CURRENT_USER\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\)"
                      uR"({4F1C2A77-0B3D-4E52-9A61-7C2E8D90B4F3}_is1)"_s;

/// Goes back to the current folder at the end of a test.
auto keepCurrentFolder()
{
    return qScopeGuard([folder = QDir::currentPath()] { QDir::setCurrent(folder); });
}

} // namespace

class TestInstallation : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void rootsInOrder_data();
    void rootsInOrder();
    void newerVersions();
    void installLocation_data();
    void installLocation();
    void isInstalled();
    void defaultInstallDir_data();
    void defaultInstallDir();
    void uninstallCommand_data();
    void uninstallCommand();
    void withoutCommandInTheInstallFolder();
    void uninstallerNotInTheInstallFolder();
    void userCommandBehindBlankMachineCommand();

private:
    void recordCommand(const QJsonValue &command, const QString &location) const;

    std::optional<Sandbox> m_sandbox;
    QString m_folder; ///< An install folder with uninstallers.
};

void TestInstallation::init()
{
    StrictTest::init();
    m_sandbox.emplace();
    for (const QString &file : { u"unins000.exe"_s, u"remove me.exe"_s, u"remove me.ex"_s })
        m_sandbox->write(u"copy one/"_s + file, {});
    m_folder = m_sandbox->nativePath(u"copy one"_s);
}

void TestInstallation::recordCommand(const QJsonValue &command, const QString &location) const
{
    QJsonObject entry { { u"InstallLocation"_s, location } };
    if (!command.isUndefined())
        entry[u"UninstallString"_s] = command;
    m_sandbox->setRegistry({ { kMachine, entry } });
}

void TestInstallation::rootsInOrder_data()
{
    QTest::addColumn<QJsonArray>("versions"); // machine, 32-bit view, user; null: none
    QTest::addColumn<QString>("found");
    const QJsonValue none;
    const auto row = [](const char *name, const QJsonArray &versions, const QString &found) {
        QTest::newRow(name) << versions << found;
    };
    row("machine-wide", { u"1.0"_s, none, none }, u"1.0"_s);
    row("32-bit view", { none, u"2.0"_s, none }, u"2.0"_s);
    row("per user", { none, none, u"3.0"_s }, u"3.0"_s);
    row("all three", { u"1.0"_s, u"2.0"_s, u"3.0"_s }, u"1.0"_s);
    row("32-bit view and user", { none, u"2.0"_s, u"3.0"_s }, u"2.0"_s);
    row("none", { none, none, none }, {});
    row("empty first", { u""_s, u"2.0"_s, u"3.0"_s }, u"2.0"_s);
    row("blank first", { u" \t\r\n\u00a0"_s, u"2.0"_s, u"3.0"_s }, u"2.0"_s);
    row("all blank", { u" "_s, u" "_s, u" "_s }, {});
    row("trimmed", { u" \t1.0 beta \r\n"_s, none, none }, u"1.0 beta"_s);
    row("a number first", { 7, u"2.0"_s, none }, u"2.0"_s);
}

void TestInstallation::rootsInOrder()
{
    QFETCH(const QJsonArray, versions);
    QFETCH(const QString, found);
    QJsonObject registry;
    const QString keys[] = { kMachine, kMachine32, kUser };
    for (int i = 0; i < 3; ++i) {
        if (!versions[i].isNull())
            registry[keys[i]] = QJsonObject { { u"DisplayVersion"_s, versions[i] } };
    }
    m_sandbox->setRegistry(registry);
    QCOMPARE(installedVersion(), found);
    QCOMPARE(readUninstallValue(u"DisplayVersion"_s), found);
    QCOMPARE(readUninstallValue(u"Absent"_s), QString());
}

void TestInstallation::newerVersions()
{
    const std::pair<QString, bool> versions[] = {
        { u"1.6.8"_s, false },     { u"1.6.9"_s, false }, { u"1.6.9.1"_s, true },
        { u"1.6.10"_s, true },     { u"2"_s, true },      { u"1.7 beta"_s, true },
        { u"version 2"_s, false },
    };
    QVERIFY(!isNewerInstalled());
    for (const auto &[version, isNewer] : versions) {
        m_sandbox->setRegistry({ { kMachine, QJsonObject { { u"DisplayVersion"_s, version } } } });
        QVERIFY2(isNewerInstalled() == isNewer, qPrintable(version));
    }
}

void TestInstallation::installLocation_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("location");
    const QString folder = uR"(C:\Program Files\Varnel Schematics)"_s;
    QTest::newRow("plain") << folder << folder;
    QTest::newRow("mixed separators at the end") << folder + uR"(\/\//)" << folder;
    QTest::newRow("blanks around") << u"  " + folder + uR"(\ )" << folder;
    QTest::newRow("two blanks in a row inside")
        << uR"(C:\Varnel  Schematics)"_s << uR"(C:\Varnel  Schematics)"_s;
    QTest::newRow("separators alone") << uR"(\/)"_s << QString();
    QTest::newRow("forward slashes")
        << u"C:/Tools/Varnel/"_s << QDir::toNativeSeparators(u"C:/Tools/Varnel"_s);
    QTest::newRow("other scripts and signs")
        << uR"(C:\Схемы & <b>%1 "x"\)"_s << uR"(C:\Схемы & <b>%1 "x")"_s;
}

void TestInstallation::installLocation()
{
    QFETCH(const QString, stored);
    m_sandbox->recordInstallation(u"1.6.9"_s, stored);
    QTEST(::installLocation(), "location");
}

void TestInstallation::isInstalled()
{
    m_sandbox->recordInstallation(u"1.5"_s, m_sandbox->path(u"copy one//"_s));
    QVERIFY(::isInstalled());
    // The folder is gone, a file is in its place, or none is recorded.
    for (const QString &location :
         { m_sandbox->path(u"gone"_s), m_sandbox->path(u"copy one/unins000.exe"_s), u" "_s }) {
        m_sandbox->recordInstallation(u"1.5"_s, location);
        QVERIFY2(!::isInstalled(), qPrintable(location));
    }
}

void TestInstallation::defaultInstallDir_data()
{
    QTest::addColumn<QString>("programFiles"); // null: unset; {root}: of the file system
    QTest::addColumn<QString>("programW6432");
    QTest::addColumn<QString>("folder");
    const QString fallback = uR"(C:\Program Files\Varnel Schematics)"_s;
    QTest::newRow("both") << u"{root}a"_s << u"{root}b"_s << u"{root}a/Varnel Schematics"_s;
    QTest::newRow("second alone") << QString() << u"{root}b"_s << u"{root}b/Varnel Schematics"_s;
    QTest::newRow("first empty") << u""_s << u"{root}b"_s << u"{root}b/Varnel Schematics"_s;
    QTest::newRow("neither") << QString() << QString() << fallback;
    QTest::newRow("both empty") << u""_s << u""_s << fallback;
    QTest::newRow("separator at the end")
        << u"{root}a/"_s << QString() << u"{root}a/Varnel Schematics"_s;
    QTest::newRow("blanks, signs, other scripts")
        << u"{root}Мои программы %1 & co"_s << QString()
        << u"{root}Мои программы %1 & co/Varnel Schematics"_s;
}

void TestInstallation::defaultInstallDir()
{
    QFETCH(const QString, programFiles);
    QFETCH(const QString, programW6432);
    QFETCH(const QString, folder);
    const auto native = [](QString text) {
        return QDir::toNativeSeparators(text.replace(u"{root}"_s, QDir::rootPath()));
    };
    const auto set = [&](const char *name, const QString &value) {
        if (value.isNull())
            qunsetenv(name);
        else
            setVariable(name, native(value));
    };
    const auto restore =
        qScopeGuard([&, old = qEnvironmentVariable("ProgramW6432")] { set("ProgramW6432", old); });
    set("ProgramFiles", programFiles);
    set("ProgramW6432", programW6432);
    QCOMPARE(::defaultInstallDir(), native(folder));
}

void TestInstallation::uninstallCommand_data()
{
    QTest::addColumn<QString>("command"); // %1: install folder
    QTest::addColumn<QString>("file"); // in the install folder; empty: none is found
    QTest::newRow("quoted") << u"\"%1/remove me.exe\""_s << u"remove me.exe"_s;
    QTest::newRow("bare, with a blank") << u"%1/remove me.exe"_s << u"remove me.exe"_s;
    QTest::newRow("blanks around the quotes")
        << u"  \"%1/remove me.exe\" \t"_s << u"remove me.exe"_s;
    QTest::newRow("missing") << u"\"%1/gone.exe\""_s << QString();
    QTest::newRow("arguments are no part of a path") << u"%1/remove me.exe /SILENT"_s << QString();
    QTest::newRow("arguments behind the quotes") << u"\"%1/remove me.exe\" /SILENT"_s << QString();
    QTest::newRow("quote at the start only") << u"\"%1/remove me.exe"_s << QString();
    QTest::newRow("quote at the end only") << u"%1/remove me.exe\""_s << QString();
    QTest::newRow("one quote alone") << u"\""_s << QString();
    QTest::newRow("quoted blank") << u"\" \""_s << QString();
    QTest::newRow("nothing in the quotes") << u"\"\""_s << u"unins000.exe"_s;
}

void TestInstallation::uninstallCommand()
{
    QFETCH(const QString, command);
    QFETCH(const QString, file);
    // From there, with the file whose name is one letter shorter, a path that has lost its first or
    // last character would lead somewhere too.
    const auto restore = keepCurrentFolder();
    QVERIFY(QDir::setCurrent(QDir::rootPath()));
    recordCommand(QString(command).replace(u"%1"_s, m_folder), m_folder);
    QCOMPARE(uninstallerPath(),
             file.isEmpty() ? QString() : QString(m_folder + QDir::separator() + file));
}

void TestInstallation::withoutCommandInTheInstallFolder()
{
    for (const QJsonValue &command : { QJsonValue(QJsonValue::Undefined), QJsonValue(u" \t "_s),
                                       QJsonValue(QJsonArray { u"x"_s }) }) {
        recordCommand(command, m_folder + uR"(//\)");
        QCOMPARE(uninstallerPath(), QString(m_folder + QDir::separator() + "unins000.exe"_L1));
    }
}

void TestInstallation::uninstallerNotInTheInstallFolder()
{
    recordCommand(QJsonValue::Undefined, m_sandbox->tempFolder());
    QCOMPARE(uninstallerPath(), QString());
    // Without a folder it must not be looked for in the current one.
    const auto restore = keepCurrentFolder();
    QVERIFY(QDir::setCurrent(m_folder));
    recordCommand(QJsonValue::Undefined, u" "_s);
    QCOMPARE(uninstallerPath(), QString());
}

void TestInstallation::userCommandBehindBlankMachineCommand()
{
    const QString command = u'"' + m_folder + "/remove me.exe\""_L1;
    m_sandbox->setRegistry(
        { { kMachine,
            QJsonObject { { u"UninstallString"_s, u" "_s }, { u"InstallLocation"_s, m_folder } } },
          { kUser, QJsonObject { { u"UninstallString"_s, command } } } });
    QCOMPARE(uninstallerPath(), QString(m_folder + QDir::separator() + "remove me.exe"_L1));
}

QTEST_GUILESS_MAIN(TestInstallation)
#include "tst_installation.moc"
