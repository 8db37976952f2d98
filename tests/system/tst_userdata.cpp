#include "support/environment.h"
#include "support/sandbox.h"
#include "support/stricttest.h"
#include "system/userdata.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <optional>

#ifndef Q_OS_WIN
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kOurs = u"appdata/Varnel Schematics/Varnel Schematics"_s;

} // namespace

class TestUserData : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void removesTheFolderAlone();
    void folderNeedNotExist();
    void rootIsCleaned();
    void unusableRoot();
    void fileInPlaceOfTheFolder();
    void removesWriteProtectedFiles();
#ifndef Q_OS_WIN
    // On Windows, links to folders take rights of their own, and no process can have a file system
    // of its own.
    void targetIsLink();
    void parentIsLink();
    void rootIsLink();
    void linksInsideGoButAreNotFollowed();
    void rootOfTheFileSystem();
#endif

private:
    QStringList everything() const;
    bool link(const QString &target, const QString &name) const
    {
        return QFile::link(m_sandbox->path(target), m_sandbox->path(name));
    }

    std::optional<Sandbox> m_sandbox;
};

void TestUserData::init()
{
    StrictTest::init();
    m_sandbox.emplace();
    m_sandbox->write(u"elsewhere/Varnel Schematics/settings.ini"_s, "kept");
    m_sandbox->write(u"elsewhere/settings.ini"_s, "kept");
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
             u"appdata/settings.ini"_s,
         })
        m_sandbox->write(kept, "kept");
    const QStringList before = everything();
    for (const QString &gone : { u"/settings.ini"_s, u"/.hidden"_s, u"/library/parts/r.lib"_s,
                                 u"/Varnel Schematics/Varnel Schematics/x"_s })
        m_sandbox->write(kOurs + gone, "gone");
    QVERIFY(QDir().mkpath(m_sandbox->path(kOurs + "/empty"_L1)));

    removeUserData();
    QCOMPARE(everything(), before);
}

void TestUserData::folderNeedNotExist()
{
    for (const QString &root : { u"appdata"_s, u"gone"_s }) {
        setVariable("APPDATA", m_sandbox->path(root));
        const QStringList before = everything();
        removeUserData();
        QCOMPARE(everything(), before);
    }
}

void TestUserData::rootIsCleaned()
{
    for (const QString &root :
         { u"/appdata//"_s, u"appdata/."_s, u"appdata/Varnel Schematics/../../appdata"_s,
           u"Дані %1 & більше"_s }) {
        const QString path = m_sandbox->path(u"."_s) + u'/' + root;
        const QString parent = QDir::cleanPath(path) + "/Varnel Schematics"_L1;
        QVERIFY(QDir().mkpath(parent + "/Varnel Schematics/a"_L1));
        setVariable("APPDATA", path);
        removeUserData();
        QVERIFY2(!QFileInfo::exists(parent + "/Varnel Schematics"_L1), qPrintable(root));
        QVERIFY(QFileInfo::exists(parent));
    }
}

// From each of these roots the current folder would lead to a folder that looks like ours.
void TestUserData::unusableRoot()
{
    const auto restore = qScopeGuard([folder = QDir::currentPath()] { QDir::setCurrent(folder); });
    QStringList parents { u"here/"_s, u"here/appdata/"_s, u"appdata/"_s, u"here/~/appdata/"_s,
                          u"home/appdata/"_s };
#ifndef Q_OS_WIN
    parents << u"here/ /"_s;
#endif
    for (const QString &parent : std::as_const(parents))
        m_sandbox->write(parent + "Varnel Schematics/Varnel Schematics/settings.ini"_L1, "kept");
    QVERIFY(QDir::setCurrent(m_sandbox->path(u"here"_s)));
    const QStringList before = everything();
    QVERIFY(qunsetenv("APPDATA"));
    removeUserData();
    QCOMPARE(everything(), before);
    for (const char *root : { "", " ", ".", "appdata", "../appdata", "~/appdata" }) {
        QVERIFY(qputenv("APPDATA", root));
        removeUserData();
        QVERIFY2(everything() == before, root);
    }
}

void TestUserData::fileInPlaceOfTheFolder()
{
    m_sandbox->write(kOurs, "kept");
    removeUserData();
    QCOMPARE(m_sandbox->read(kOurs), "kept"_ba);
}

void TestUserData::removesWriteProtectedFiles()
{
    const QString file = m_sandbox->write(kOurs + "/a/settings.ini"_L1, "gone");
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
    removeUserData();
    QVERIFY(!QFileInfo::exists(m_sandbox->path(kOurs)));
}

#ifndef Q_OS_WIN

void TestUserData::targetIsLink()
{
    m_sandbox->write(u"appdata/Varnel Schematics/beside/settings.ini"_s, "kept");
    for (const QString &target : { u"elsewhere"_s, u"appdata/Varnel Schematics/beside"_s,
                                   u"appdata"_s, u"elsewhere/settings.ini"_s, u"nothing"_s }) {
        QVERIFY(link(target, kOurs));
        const QStringList before = everything();
        removeUserData();
        QVERIFY(QFileInfo(m_sandbox->path(kOurs)).isSymLink());
        QVERIFY2(everything() == before, qPrintable(target));
        QVERIFY(QFile::remove(m_sandbox->path(kOurs)));
    }
}

void TestUserData::parentIsLink()
{
    QVERIFY(link(u"elsewhere"_s, u"appdata/Varnel Schematics"_s));
    const QStringList before = everything();
    removeUserData();
    QCOMPARE(everything(), before);
}

// The user or the administrator may keep the whole root somewhere else.
void TestUserData::rootIsLink()
{
    m_sandbox->write(u"moved/Varnel Schematics/Varnel Schematics/settings.ini"_s, "gone");
    QVERIFY(link(u"moved"_s, u"link"_s));
    setVariable("APPDATA", m_sandbox->path(u"link"_s));
    removeUserData();
    QVERIFY(!QFileInfo::exists(m_sandbox->path(u"moved/Varnel Schematics/Varnel Schematics"_s)));
    QVERIFY(QFileInfo::exists(m_sandbox->path(u"moved/Varnel Schematics"_s)));
}

void TestUserData::linksInsideGoButAreNotFollowed()
{
    QVERIFY(QDir().mkpath(m_sandbox->path(u"appdata/Varnel Schematics"_s)));
    const QStringList before = everything();
    m_sandbox->write(kOurs + "/sub/settings.ini"_L1, "gone");
    QVERIFY(link(u"elsewhere"_s, kOurs + "/folder"_L1));
    QVERIFY(link(u"elsewhere"_s, kOurs + "/sub/folder"_L1));
    QVERIFY(link(u"elsewhere/settings.ini"_s, kOurs + "/file"_L1));
    QVERIFY(link(u"gone"_s, kOurs + "/nowhere"_L1));
    QVERIFY(link(u"appdata"_s, kOurs + "/back"_L1));
    removeUserData();
    QCOMPARE(everything(), before);
}

// In a process for which the sandbox is the file system's root. Only root may do so, and others in
// a name space of their own where the kernel lets them.
void TestUserData::rootOfTheFileSystem()
{
    constexpr int kNoRootOfItsOwn = 1;
    const QByteArray newRoot = QFile::encodeName(m_sandbox->path(u"."_s));
    const QString inRoot = m_sandbox->write(u"Varnel Schematics/Varnel Schematics/x"_s, "kept");
    const QString below = m_sandbox->write(kOurs + "/x"_L1, "x");
    // The last one shows that in that process something would be removed if it should be.
    for (const QByteArray root : { "//", "/appdata/..", "/appdata" }) {
        qputenv("APPDATA", root);
        const pid_t child = fork();
        if (child == 0) {
#ifdef Q_OS_LINUX
            if (geteuid() != 0)
                unshare(CLONE_NEWUSER);
#endif
            if (chroot(newRoot.constData()) != 0 || chdir("/") != 0)
                _exit(kNoRootOfItsOwn);
            removeUserData();
            _exit(0);
        }
        int status = -1;
        QCOMPARE(waitpid(child, &status, 0), child);
        QVERIFY(WIFEXITED(status));
        if (WEXITSTATUS(status) == kNoRootOfItsOwn)
            QSKIP("This user may not give a process a root of its own.");
        QVERIFY(QFileInfo::exists(inRoot));
        QCOMPARE(QFileInfo::exists(below), root != "/appdata");
    }
}

#endif

QTEST_GUILESS_MAIN(TestUserData)
#include "tst_userdata.moc"
