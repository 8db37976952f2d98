#include "support/sandbox.h"
#include "system/userdata.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <memory>

#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

enum Outcome : int { Done, NoRootOfItsOwn };

/// Runs removeUserData() in a process for which `folder` is the file system's root, with APPDATA
/// set to `root`. Only root may do so, and others in a name space of their own where the kernel
/// lets them.
int removeUserDataBelow(const QString &folder, const QByteArray &root)
{
    const QByteArray newRoot = QFile::encodeName(folder);
    qputenv("APPDATA", root);
    const pid_t child = fork();
    if (child == 0) {
#ifdef Q_OS_LINUX
        if (geteuid() != 0 && unshare(CLONE_NEWUSER) != 0)
            _exit(NoRootOfItsOwn);
#endif
        if (chroot(newRoot.constData()) != 0 || chdir("/") != 0)
            _exit(NoRootOfItsOwn);
        removeUserData();
        _exit(Done);
    }
    int status = -1;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

class TestUserDataLinks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void targetIsLink_data();
    void targetIsLink();
    void parentIsLink();
    void rootIsLink();
    void linksInsideGoButAreNotFollowed();
    void rootOfTheFileSystem_data();
    void rootOfTheFileSystem();

private:
    std::unique_ptr<Sandbox> m_sandbox;
};

void TestUserDataLinks::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_sandbox = std::make_unique<Sandbox>();
    m_sandbox->write(u"elsewhere/Varnel Schematics/settings.ini"_s, "kept");
    m_sandbox->write(u"elsewhere/settings.ini"_s, "kept");
}

void TestUserDataLinks::cleanup()
{
    m_sandbox.reset();
}

void TestUserDataLinks::targetIsLink_data()
{
    QTest::addColumn<QString>("leadsTo"); // below the sandbox
    QTest::newRow("to a folder elsewhere") << u"elsewhere"_s;
    QTest::newRow("to a folder beside it") << u"appdata/Varnel Schematics/beside"_s;
    QTest::newRow("to the root") << u"appdata"_s;
    QTest::newRow("to a file") << u"elsewhere/settings.ini"_s;
    QTest::newRow("to nothing") << u"gone"_s;
}

void TestUserDataLinks::targetIsLink()
{
    QFETCH(const QString, leadsTo);
    const QString kept =
        m_sandbox->write(u"appdata/Varnel Schematics/beside/settings.ini"_s, "kept");
    const QString link = m_sandbox->path(u"appdata/Varnel Schematics/Varnel Schematics"_s);
    QVERIFY(QFile::link(m_sandbox->path(leadsTo), link));
    removeUserData();
    QVERIFY(QFileInfo(link).isSymLink());
    QVERIFY(QFileInfo::exists(kept));
    QCOMPARE(m_sandbox->read(u"elsewhere/settings.ini"_s), "kept"_ba);
    QCOMPARE(m_sandbox->read(u"elsewhere/Varnel Schematics/settings.ini"_s), "kept"_ba);
}

void TestUserDataLinks::parentIsLink()
{
    const QString link = m_sandbox->path(u"appdata/Varnel Schematics"_s);
    QVERIFY(QFile::link(m_sandbox->path(u"elsewhere"_s), link));
    removeUserData();
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(m_sandbox->read(u"elsewhere/Varnel Schematics/settings.ini"_s), "kept"_ba);
}

// The user, or who looks after the machine, put the whole root somewhere else; that is fine.
void TestUserDataLinks::rootIsLink()
{
    m_sandbox->write(u"moved/Varnel Schematics/Varnel Schematics/settings.ini"_s, "gone");
    m_sandbox->write(u"moved/Other/settings.ini"_s, "kept");
    const QString link = m_sandbox->path(u"link"_s);
    QVERIFY(QFile::link(m_sandbox->path(u"moved"_s), link));
    qputenv("APPDATA", link.toLocal8Bit());
    removeUserData();
    QVERIFY(!QFileInfo::exists(m_sandbox->path(u"moved/Varnel Schematics/Varnel Schematics"_s)));
    QCOMPARE(m_sandbox->read(u"moved/Other/settings.ini"_s), "kept"_ba);
}

void TestUserDataLinks::linksInsideGoButAreNotFollowed()
{
    const QString ours = u"appdata/Varnel Schematics/Varnel Schematics"_s;
    m_sandbox->write(ours + "/sub/settings.ini"_L1, "gone");
    const auto link = [&](const QString &target, const QString &name) {
        return QFile::link(m_sandbox->path(target), m_sandbox->path(QString(ours + u'/' + name)));
    };
    QVERIFY(link(u"elsewhere"_s, u"folder"_s));
    QVERIFY(link(u"elsewhere"_s, u"sub/folder"_s));
    QVERIFY(link(u"elsewhere/settings.ini"_s, u"file"_s));
    QVERIFY(link(u"gone"_s, u"nowhere"_s));
    QVERIFY(link(u"appdata"_s, u"back"_s));
    removeUserData();
    QVERIFY(!QFileInfo::exists(m_sandbox->path(ours)));
    QVERIFY(QFileInfo::exists(m_sandbox->path(u"appdata/Varnel Schematics"_s)));
    QCOMPARE(m_sandbox->read(u"elsewhere/settings.ini"_s), "kept"_ba);
    QCOMPARE(m_sandbox->read(u"elsewhere/Varnel Schematics/settings.ini"_s), "kept"_ba);
}

void TestUserDataLinks::rootOfTheFileSystem_data()
{
    QTest::addColumn<QByteArray>("root");
    QTest::addColumn<bool>("removed");
    QTest::newRow("root") << "/"_ba << false;
    QTest::newRow("root, twice") << "//"_ba << false;
    QTest::newRow("root, the long way") << "/appdata/.."_ba << false;
    // Shows that in that process something would be removed if it should be.
    QTest::newRow("a folder in it") << "/appdata"_ba << true;
}

void TestUserDataLinks::rootOfTheFileSystem()
{
    QFETCH(const QByteArray, root);
    QFETCH(const bool, removed);
    const QString inRoot = m_sandbox->write(u"Varnel Schematics/Varnel Schematics/x"_s, "kept");
    const QString below = m_sandbox->write(u"appdata/Varnel Schematics/Varnel Schematics/x"_s, "x");
    const int outcome = removeUserDataBelow(m_sandbox->path(u"."_s), root);
    if (outcome == NoRootOfItsOwn)
        QSKIP("This user may not give a process a root of its own.");
    QCOMPARE(outcome, int(Done));
    QVERIFY(QFileInfo::exists(inRoot));
    QCOMPARE(QFileInfo::exists(below), !removed);
}

QTEST_GUILESS_MAIN(TestUserDataLinks)
#include "tst_userdata_links.moc"
