#include "support/sandbox.h"
#include "system/installation.h"

#include <QDir>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kKey = uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\)"
                     uR"({4F1C2A77-0B3D-4E52-9A61-7C2E8D90B4F3}_is1)"_s;
const QString kUserKey =
    uR"(HKEY_CURRENT_USER\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\)"
    uR"({4F1C2A77-0B3D-4E52-9A61-7C2E8D90B4F3}_is1)"_s;

} // namespace

class TestInstallationUninstaller : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void recordedCommand_data();
    void recordedCommand();
    void loneQuoteIsAName();
    void folderCountsToo();
    void withoutCommandInTheInstallFolder_data();
    void withoutCommandInTheInstallFolder();
    void notInTheInstallFolder();
    void folderHasSeparatorsAtTheEnd();
    void userCommandBehindBlankMachineCommand();

private:
    void record(const QJsonValue &uninstallString, const QString &location);

    std::unique_ptr<Sandbox> m_sandbox;
    QString m_folder; ///< install folder; holds unins000.exe
};

void TestInstallationUninstaller::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_sandbox = std::make_unique<Sandbox>();
    m_sandbox->write(u"copy one/unins000.exe"_s, {});
    m_sandbox->write(u"copy one/remove me.exe"_s, {});
    m_sandbox->write(u"copy one/remove me.ex"_s, {});
    m_folder = m_sandbox->nativePath(u"copy one"_s);
}

void TestInstallationUninstaller::cleanup()
{
    m_sandbox.reset();
}

void TestInstallationUninstaller::record(const QJsonValue &uninstallString, const QString &location)
{
    QJsonObject entry { { u"InstallLocation"_s, location } };
    if (!uninstallString.isUndefined())
        entry[u"UninstallString"_s] = uninstallString;
    m_sandbox->setRegistry({ { kKey, entry } });
}

void TestInstallationUninstaller::recordedCommand_data()
{
    QTest::addColumn<QString>("command"); // %1: install folder
    QTest::addColumn<QString>("file"); // in the install folder; empty: none is found
    QTest::newRow("quoted") << u"\"%1/remove me.exe\""_s << u"remove me.exe"_s;
    QTest::newRow("bare, with a blank") << u"%1/remove me.exe"_s << u"remove me.exe"_s;
    QTest::newRow("blanks around the quotes")
        << u"  \"%1/remove me.exe\" \t"_s << u"remove me.exe"_s;
    QTest::newRow("quoted and missing") << u"\"%1/gone.exe\""_s << QString();
    QTest::newRow("bare and missing") << u"%1/gone.exe"_s << QString();
    QTest::newRow("arguments are no part of a path") << u"%1/remove me.exe /SILENT"_s << QString();
    QTest::newRow("arguments behind the quotes") << u"\"%1/remove me.exe\" /SILENT"_s << QString();
    QTest::newRow("quote at the start only") << u"\"%1/remove me.exe"_s << QString();
    QTest::newRow("quote at the end only") << u"%1/remove me.exe\""_s << QString();
    QTest::newRow("quoted twice") << u"\"\"%1/remove me.exe\"\""_s << QString();
    QTest::newRow("lone quote") << u"\""_s << QString();
    QTest::newRow("quoted blank") << u"\" \""_s << QString();
    QTest::newRow("nothing in the quotes") << u"\"\""_s << u"unins000.exe"_s;
}

void TestInstallationUninstaller::recordedCommand()
{
    QFETCH(const QString, command);
    QFETCH(const QString, file);
    // From there, with the file whose name is one letter shorter, a path that has lost its first or
    // last character would lead somewhere too.
    const auto restore = qScopeGuard([folder = QDir::currentPath()] { QDir::setCurrent(folder); });
    QVERIFY(QDir::setCurrent(QDir::rootPath()));
    record(QString(command).replace(u"%1"_s, m_folder), m_folder);
    QCOMPARE(uninstallerPath(),
             file.isEmpty() ? QString() : QString(m_folder + QDir::separator() + file));
}

// With a file of that name it shows that the quote has not been taken off.
void TestInstallationUninstaller::loneQuoteIsAName()
{
#ifdef Q_OS_WIN
    QSKIP("Windows knows no names with quotes.");
#endif
    const auto restore = qScopeGuard([folder = QDir::currentPath()] { QDir::setCurrent(folder); });
    m_sandbox->write(u"odd/\""_s, {});
    QVERIFY(QDir::setCurrent(m_sandbox->path(u"odd"_s)));
    record(u"\""_s, m_folder);
    QCOMPARE(uninstallerPath(), u"\""_s);
}

void TestInstallationUninstaller::folderCountsToo()
{
    record(m_folder, {});
    QCOMPARE(uninstallerPath(), m_folder);
}

void TestInstallationUninstaller::withoutCommandInTheInstallFolder_data()
{
    QTest::addColumn<QJsonValue>("command");
    QTest::newRow("none") << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("empty") << QJsonValue(u""_s);
    QTest::newRow("blank") << QJsonValue(u" \t "_s);
    QTest::newRow("a list") << QJsonValue(QJsonArray { u"x"_s });
}

void TestInstallationUninstaller::withoutCommandInTheInstallFolder()
{
    QFETCH(const QJsonValue, command);
    record(command, m_folder);
    QCOMPARE(uninstallerPath(), QString(m_folder + QDir::separator() + "unins000.exe"_L1));
}

void TestInstallationUninstaller::notInTheInstallFolder()
{
    record(QJsonValue::Undefined, m_sandbox->tempFolder());
    QCOMPARE(uninstallerPath(), QString());
    record(QJsonValue::Undefined, m_sandbox->path(u"gone"_s));
    QCOMPARE(uninstallerPath(), QString());
    // Without a folder it must not be looked for in the current one.
    const auto restore = qScopeGuard([folder = QDir::currentPath()] { QDir::setCurrent(folder); });
    QVERIFY(QDir::setCurrent(m_folder));
    record(QJsonValue::Undefined, u" "_s);
    QCOMPARE(uninstallerPath(), QString());
}

void TestInstallationUninstaller::folderHasSeparatorsAtTheEnd()
{
    record(QJsonValue::Undefined, m_folder + uR"(//\)");
    QCOMPARE(uninstallerPath(), QString(m_folder + QDir::separator() + "unins000.exe"_L1));
}

void TestInstallationUninstaller::userCommandBehindBlankMachineCommand()
{
    const QString command = u'"' + m_folder + "/remove me.exe\""_L1;
    m_sandbox->setRegistry(
        { { kKey,
            QJsonObject { { u"UninstallString"_s, u" "_s }, { u"InstallLocation"_s, m_folder } } },
          { kUserKey, QJsonObject { { u"UninstallString"_s, command } } } });
    QCOMPARE(uninstallerPath(), QString(m_folder + QDir::separator() + "remove me.exe"_L1));
}

QTEST_GUILESS_MAIN(TestInstallationUninstaller)
#include "tst_installation_uninstaller.moc"
