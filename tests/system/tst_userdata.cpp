#include "support/environment.h"
#include "support/sandbox.h"
#include "system/userdata.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

class TestUserData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void removesTheFolderAlone();
    void folderNeedNotExist_data();
    void folderNeedNotExist();
    void rootIsCleaned_data();
    void rootIsCleaned();
    void otherScripts();
    void unusableRoot_data();
    void unusableRoot();
    void fileInPlaceOfTheFolder();
    void removesWriteProtectedFiles();

private:
    QStringList everything() const;

    std::unique_ptr<Sandbox> m_sandbox;
};

void TestUserData::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_sandbox = std::make_unique<Sandbox>();
}

void TestUserData::cleanup()
{
    m_sandbox.reset();
}

/// All that is in the sandbox, files and folders, relative and sorted.
QStringList TestUserData::everything() const
{
    const QDir root(m_sandbox->path(u"."_s));
    QStringList paths;
    QDirIterator it(root.path(),
                    QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        paths << root.relativeFilePath(it.next());
    paths.sort();
    return paths;
}

void TestUserData::removesTheFolderAlone()
{
    for (const QString &kept : {
             u"appdata/Varnel Schematics/other program/settings.ini"_s,
             u"appdata/Varnel Schematics/Varnel Schematics.ini"_s,
             u"appdata/Varnel Schematics/Varnel Schematics 2/settings.ini"_s,
             u"appdata/Varnel Schematics 2/Varnel Schematics/settings.ini"_s,
             u"appdata/Other/settings.ini"_s,
             u"appdata/settings.ini"_s,
         })
        m_sandbox->write(kept, "kept");
    const QStringList before = everything();
    for (const QString &gone : { u"settings.ini"_s, u".hidden"_s, u"library/parts/r.lib"_s,
                                 u"Varnel Schematics/Varnel Schematics/x"_s })
        m_sandbox->write(u"appdata/Varnel Schematics/Varnel Schematics/" + gone, "gone");
    QVERIFY(QDir().mkpath(m_sandbox->path(u"appdata/Varnel Schematics/Varnel Schematics/empty"_s)));

    removeUserData();
    QCOMPARE(everything(), before);
}

void TestUserData::folderNeedNotExist_data()
{
    QTest::addColumn<QString>("there");
    QTest::newRow("empty root") << u"appdata"_s;
    QTest::newRow("folder of the maker alone") << u"appdata/Varnel Schematics"_s;
    QTest::newRow("no root") << QString();
}

void TestUserData::folderNeedNotExist()
{
    QFETCH(const QString, there);
    if (there.isEmpty())
        qputenv("APPDATA", m_sandbox->path(u"gone"_s).toLocal8Bit());
    else
        QVERIFY(QDir().mkpath(m_sandbox->path(there)));
    const QStringList before = everything();
    removeUserData();
    QCOMPARE(everything(), before);
}

void TestUserData::rootIsCleaned_data()
{
    QTest::addColumn<QString>("root");
    QTest::newRow("separator at the end") << u"appdata/"_s;
    QTest::newRow("doubled separators") << u"/appdata//"_s;
    QTest::newRow("the folder itself") << u"appdata/."_s;
    QTest::newRow("up and down") << u"appdata/Varnel Schematics/../../appdata"_s;
}

void TestUserData::rootIsCleaned()
{
    QFETCH(const QString, root);
    m_sandbox->write(u"appdata/Varnel Schematics/Varnel Schematics/settings.ini"_s, "gone");
    qputenv("APPDATA", m_sandbox->path(u"."_s).toLocal8Bit() + '/' + root.toLocal8Bit());
    removeUserData();
    QVERIFY(!QFileInfo::exists(m_sandbox->path(u"appdata/Varnel Schematics/Varnel Schematics"_s)));
    QVERIFY(QFileInfo::exists(m_sandbox->path(u"appdata/Varnel Schematics"_s)));
}

void TestUserData::otherScripts()
{
    const QString name = u"Дані %1 & більше"_s;
    m_sandbox->write(name + "/Varnel Schematics/Varnel Schematics/x"_L1, "gone");
    setVariable("APPDATA", m_sandbox->path(name));
    removeUserData();
    QVERIFY(!QFileInfo::exists(m_sandbox->path(name + "/Varnel Schematics/Varnel Schematics"_L1)));
    QVERIFY(QFileInfo::exists(m_sandbox->path(name + "/Varnel Schematics"_L1)));
}

void TestUserData::unusableRoot_data()
{
    QTest::addColumn<QByteArray>("root"); // null: unset
    QTest::newRow("unset") << QByteArray();
    QTest::newRow("empty") << ""_ba;
    QTest::newRow("blank") << " "_ba;
    QTest::newRow("current folder") << "."_ba;
    QTest::newRow("relative") << "appdata"_ba;
    QTest::newRow("relative to the current folder") << "./appdata"_ba;
    QTest::newRow("relative and up") << "../appdata"_ba;
    QTest::newRow("tilde") << "~/appdata"_ba;
}

// From any of these the current folder would lead to a folder that looks like ours.
void TestUserData::unusableRoot()
{
    QFETCH(const QByteArray, root);
    const auto restore = qScopeGuard([folder = QDir::currentPath()] { QDir::setCurrent(folder); });
    const QString ours = u"Varnel Schematics/Varnel Schematics/settings.ini"_s;
    QStringList parents { u"here/"_s, u"here/appdata/"_s, u"appdata/"_s, u"here/~/appdata/"_s,
                          u"home/appdata/"_s };
#ifndef Q_OS_WIN
    parents << u"here/ /"_s;
#endif
    for (const QString &parent : std::as_const(parents))
        m_sandbox->write(parent + ours, "kept");
    QVERIFY(QDir::setCurrent(m_sandbox->path(u"here"_s)));
    QVERIFY(root.isNull() ? qunsetenv("APPDATA") : qputenv("APPDATA", root));
    const QStringList before = everything();
    removeUserData();
    QCOMPARE(everything(), before);
}

void TestUserData::fileInPlaceOfTheFolder()
{
    m_sandbox->write(u"appdata/Varnel Schematics/Varnel Schematics"_s, "kept");
    removeUserData();
    QCOMPARE(m_sandbox->read(u"appdata/Varnel Schematics/Varnel Schematics"_s), "kept"_ba);
}

void TestUserData::removesWriteProtectedFiles()
{
    const QString file =
        m_sandbox->write(u"appdata/Varnel Schematics/Varnel Schematics/a/settings.ini"_s, "gone");
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
    removeUserData();
    QVERIFY(!QFileInfo::exists(m_sandbox->path(u"appdata/Varnel Schematics/Varnel Schematics"_s)));
}

QTEST_GUILESS_MAIN(TestUserData)
#include "tst_userdata.moc"
