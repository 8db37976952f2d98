#include "support/environment.h"
#include "support/sandbox.h"
#include "system/installation.h"
#include "system/registry.h"

#include <QDir>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTest>

#include <memory>

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

} // namespace

class TestInstallation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void rootsInOrder_data();
    void rootsInOrder();
    void eachValueIsLookedForByItself();
    void nothingRecorded();
    void otherProductsDoNotCount();
    void installLocation_data();
    void installLocation();
    void isInstalled_data();
    void isInstalled();
    void defaultInstallDir_data();
    void defaultInstallDir();
    void registryInt_data();
    void registryInt();

private:
    std::unique_ptr<Sandbox> m_sandbox;
};

void TestInstallation::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_sandbox = std::make_unique<Sandbox>();
}

void TestInstallation::cleanup()
{
    m_sandbox.reset();
}

void TestInstallation::rootsInOrder_data()
{
    QTest::addColumn<QJsonValue>("machine");
    QTest::addColumn<QJsonValue>("machine32");
    QTest::addColumn<QJsonValue>("user");
    QTest::addColumn<QString>("found");
    const QJsonValue none = QJsonValue::Undefined;
    const QJsonValue a = u"1.0"_s;
    const QJsonValue b = u"2.0"_s;
    const QJsonValue c = u"3.0"_s;
    QTest::newRow("machine-wide") << a << none << none << u"1.0"_s;
    QTest::newRow("32-bit view") << none << b << none << u"2.0"_s;
    QTest::newRow("per user") << none << none << c << u"3.0"_s;
    QTest::newRow("all three") << a << b << c << u"1.0"_s;
    QTest::newRow("both machine-wide") << a << b << none << u"1.0"_s;
    QTest::newRow("machine and user") << a << none << c << u"1.0"_s;
    QTest::newRow("32-bit view and user") << none << b << c << u"2.0"_s;
    QTest::newRow("none") << none << none << none << QString();
    QTest::newRow("empty first") << QJsonValue(u""_s) << b << c << u"2.0"_s;
    QTest::newRow("blank first") << QJsonValue(u"   "_s) << b << c << u"2.0"_s;
    QTest::newRow("tab and line end first") << QJsonValue(u"\t\r\n"_s) << b << c << u"2.0"_s;
    QTest::newRow("no-break space first") << QJsonValue(u"\u00a0"_s) << b << c << u"2.0"_s;
    QTest::newRow("blank twice") << QJsonValue(u" "_s) << QJsonValue(u" "_s) << c << u"3.0"_s;
    QTest::newRow("all blank") << QJsonValue(u" "_s) << QJsonValue(u" "_s) << QJsonValue(u" "_s)
                               << QString();
    QTest::newRow("trimmed") << QJsonValue(u" \t1.0 beta \r\n"_s) << b << c << u"1.0 beta"_s;
    QTest::newRow("a number first") << QJsonValue(7) << b << c << u"2.0"_s;
    QTest::newRow("a list first") << QJsonValue(QJsonArray { u"1.0"_s }) << b << c << u"2.0"_s;
    QTest::newRow("an object first")
        << QJsonValue(QJsonObject { { u"a"_s, 1 } }) << b << c << u"2.0"_s;
    QTest::newRow("a null first") << QJsonValue(QJsonValue::Null) << b << c << u"2.0"_s;
    QTest::newRow("a truth value first") << QJsonValue(true) << b << c << u"2.0"_s;
}

void TestInstallation::rootsInOrder()
{
    QFETCH(const QJsonValue, machine);
    QFETCH(const QJsonValue, machine32);
    QFETCH(const QJsonValue, user);
    QFETCH(const QString, found);
    QJsonObject registry;
    const auto store = [&registry](const QString &key, const QJsonValue &value) {
        if (!value.isUndefined())
            registry[key] = QJsonObject { { u"DisplayVersion"_s, value }, { u"Other"_s, value } };
    };
    store(kMachine, machine);
    store(kMachine32, machine32);
    store(kUser, user);
    m_sandbox->setRegistry(registry);
    QCOMPARE(installedVersion(), found);
    QCOMPARE(readUninstallValue(u"DisplayVersion"_s), found);
    QCOMPARE(readUninstallValue(u"Other"_s), found);
    QCOMPARE(readUninstallValue(u"Absent"_s), QString());
}

void TestInstallation::eachValueIsLookedForByItself()
{
    m_sandbox->setRegistry({ { kMachine, QJsonObject { { u"DisplayVersion"_s, u"1.0"_s } } },
                             { kUser,
                               QJsonObject { { u"DisplayVersion"_s, u"3.0"_s },
                                             { u"InstallLocation"_s, u"/users/own"_s } } } });
    QCOMPARE(installedVersion(), u"1.0"_s);
    QCOMPARE(::installLocation(), QDir::toNativeSeparators(u"/users/own"_s));
}

void TestInstallation::nothingRecorded()
{
    QCOMPARE(installedVersion(), QString());
    QCOMPARE(::installLocation(), QString());
    QCOMPARE(uninstallerPath(), QString());
    QVERIFY(!::isInstalled());
}

void TestInstallation::otherProductsDoNotCount()
{
    const QString parent =
        uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall)"_s;
    const QJsonObject entry { { u"DisplayVersion"_s, u"1.0"_s },
                              { u"InstallLocation"_s, m_sandbox->tempFolder() } };
    m_sandbox->setRegistry({ { parent, entry },
                             { parent + uR"(\{4F1C2A77-0B3D-4E52-9A61-7C2E8D90B4F3})", entry },
                             { parent + uR"(\{4F1C2A77-0B3D-4E52-9A61-7C2E8D90B4F4}_is1)", entry },
                             { parent + uR"(\Varnel Schematics)", entry } });
    QCOMPARE(installedVersion(), QString());
    QVERIFY(!::isInstalled());
}

void TestInstallation::installLocation_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("location");
    const QString folder = uR"(C:\Program Files\Varnel Schematics)"_s;
    QTest::newRow("plain") << folder << folder;
    QTest::newRow("back-slash at the end") << folder + u'\\' << folder;
    QTest::newRow("two back-slashes") << folder + uR"(\\)" << folder;
    QTest::newRow("slash at the end") << folder + u'/' << folder;
    QTest::newRow("mixed separators") << folder + uR"(\/\//)" << folder;
    QTest::newRow("blanks around") << u"  " + folder + uR"(\ )" << folder;
    QTest::newRow("two blanks in a row inside")
        << uR"(  C:\Varnel  Schematics  )"_s << uR"(C:\Varnel  Schematics)"_s;
    QTest::newRow("drive root") << uR"(D:\)"_s << u"D:"_s;
    QTest::newRow("separators alone") << uR"(\/)"_s << QString();
    QTest::newRow("forward slashes")
        << u"C:/Tools/Varnel/"_s << QDir::toNativeSeparators(u"C:/Tools/Varnel"_s);
    QTest::newRow("network folder")
        << uR"(\\server\share\Varnel\)"_s << uR"(\\server\share\Varnel)"_s;
    QTest::newRow("other scripts and signs")
        << uR"(C:\Схемы & <b>%1 "x"\)"_s << uR"(C:\Схемы & <b>%1 "x")"_s;
    QTest::newRow("very long") << QString(5000, u'x') + u'\\' << QString(5000, u'x');
}

void TestInstallation::installLocation()
{
    QFETCH(const QString, stored);
    QFETCH(const QString, location);
    m_sandbox->recordInstallation(u"1.6.9"_s, stored);
    QCOMPARE(::installLocation(), location);
}

void TestInstallation::isInstalled_data()
{
    QTest::addColumn<QString>("location");
    QTest::addColumn<bool>("installed");
    QTest::newRow("folder") << u"there"_s << true;
    QTest::newRow("folder with separators at the end") << u"there//"_s << true;
    QTest::newRow("folder gone") << u"gone"_s << false;
    QTest::newRow("file in its place") << u"file"_s << false;
    QTest::newRow("nothing") << QString() << false;
}

void TestInstallation::isInstalled()
{
    QFETCH(const QString, location);
    QFETCH(const bool, installed);
    m_sandbox->write(u"there/VarnelSolutions.exe"_s, {});
    m_sandbox->write(u"file"_s, {});
    m_sandbox->recordInstallation(u"1.5"_s,
                                  location.isEmpty() ? u" "_s : m_sandbox->path(location));
    QCOMPARE(::isInstalled(), installed);
    QCOMPARE(installedVersion(), u"1.5"_s);
}

void TestInstallation::defaultInstallDir_data()
{
    QTest::addColumn<QString>("programFiles"); // null: unset
    QTest::addColumn<QString>("programW6432");
    QTest::addColumn<QString>("folder");
    const QString unset;
    const QString fallback = uR"(C:\Program Files\Varnel Schematics)"_s;
    QTest::newRow("both") << u"{root}a"_s << u"{root}b"_s << u"{root}a/Varnel Schematics"_s;
    QTest::newRow("first alone") << u"{root}a"_s << unset << u"{root}a/Varnel Schematics"_s;
    QTest::newRow("second alone") << unset << u"{root}b"_s << u"{root}b/Varnel Schematics"_s;
    QTest::newRow("first empty") << u""_s << u"{root}b"_s << u"{root}b/Varnel Schematics"_s;
    QTest::newRow("neither") << unset << unset << fallback;
    QTest::newRow("both empty") << u""_s << u""_s << fallback;
    QTest::newRow("separator at the end")
        << u"{root}a/"_s << unset << u"{root}a/Varnel Schematics"_s;
    QTest::newRow("blanks, signs, other scripts")
        << u"{root}Мои программы %1 & co"_s << unset
        << u"{root}Мои программы %1 & co/Varnel Schematics"_s;
    QTest::newRow("missing folder") << u"{root}not/there/at/all"_s << u"{root}tmp"_s
                                    << u"{root}not/there/at/all/Varnel Schematics"_s;
}

void TestInstallation::defaultInstallDir()
{
    QFETCH(QString, programFiles);
    QFETCH(QString, programW6432);
    QFETCH(QString, folder);
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

void TestInstallation::registryInt_data()
{
    QTest::addColumn<QJsonValue>("stored");
    QTest::addColumn<int>("number");
    QTest::newRow("missing") << QJsonValue(QJsonValue::Undefined) << 0;
    QTest::newRow("number") << QJsonValue(528040) << 528040;
    QTest::newRow("greatest") << QJsonValue(2147483647) << 2147483647;
    QTest::newRow("negative") << QJsonValue(-1) << -1;
    QTest::newRow("text") << QJsonValue(u"22631"_s) << 22631;
    QTest::newRow("no number") << QJsonValue(u"22H2"_s) << 0;
    QTest::newRow("number and more") << QJsonValue(u"22631.1"_s) << 0;
    QTest::newRow("empty") << QJsonValue(u""_s) << 0;
    QTest::newRow("too great") << QJsonValue(u"4294967296"_s) << 0;
    QTest::newRow("truth value") << QJsonValue(true) << 0;
    QTest::newRow("list") << QJsonValue(QJsonArray { 1 }) << 0;
    QTest::newRow("null") << QJsonValue(QJsonValue::Null) << 0;
}

void TestInstallation::registryInt()
{
    QFETCH(const QJsonValue, stored);
    QFETCH(const int, number);
    QJsonObject key { { u"Other"_s, 5 } };
    if (!stored.isUndefined())
        key[u"Release"_s] = stored;
    m_sandbox->setRegistry({ { uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Key)"_s, key } });
    QCOMPARE(readRegistryInt(uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Key)"_s, u"Release"_s), number);
    QCOMPARE(readRegistryInt(uR"(HKEY_CURRENT_USER\SOFTWARE\Key)"_s, u"Release"_s), 0);
}

QTEST_GUILESS_MAIN(TestInstallation)
#include "tst_installation.moc"
