#include "support/sandbox.h"
#include "system/launch.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <memory>

#include <sys/wait.h>
#ifdef Q_OS_LINUX
#include <sys/prctl.h>
#endif

using namespace Qt::Literals::StringLiterals;

namespace {

// Notes how and where it was started, as one line.
constexpr auto kApplication = "#!/bin/sh\n"
                              "printf '%s|%s|%s\\n' \"$0\" \"$#\" \"$(pwd -P)\" "
                              ">> \"$VARNEL_LAUNCH_RECORD\"\n";

} // namespace

class TestLaunch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void startsOnceInItsFolder_data();
    void startsOnceInItsFolder();
    void everyCallStartsAnother();
    void relativeFolder();
    void nothingToStart_data();
    void nothingToStart();

private:
    void installApplication(const QString &folder) const;
    QStringList launches() const;

    std::unique_ptr<Sandbox> m_sandbox;
};

void TestLaunch::initTestCase()
{
#ifdef Q_OS_LINUX
    // What is started detached becomes a child of ours after all, so that its end can be waited
    // for.
    QCOMPARE(prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
#else
    QSKIP("Here nobody can tell when a detached process has ended.");
#endif
}

void TestLaunch::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_sandbox = std::make_unique<Sandbox>();
}

void TestLaunch::cleanup()
{
    m_sandbox.reset();
}

void TestLaunch::installApplication(const QString &folder) const
{
    const QString program = m_sandbox->write(folder + "/VarnelSolutions.exe"_L1, kApplication);
    QVERIFY(QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

/// One line per start so far; none is under way any more.
QStringList TestLaunch::launches() const
{
    while (waitpid(-1, nullptr, 0) > 0) {}
    return QString::fromUtf8(m_sandbox->read(u"launches.txt"_s)).split(u'\n', Qt::SkipEmptyParts);
}

void TestLaunch::startsOnceInItsFolder_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << u"copy"_s;
    QTest::newRow("blank") << u"Varnel Schematics"_s;
    QTest::newRow("quotes") << u"a \"b\" 'c'"_s;
    QTest::newRow("shell's signs") << u"a $HOME `x` ; & * \\ (b)"_s;
    QTest::newRow("place markers") << u"a %1 %2"_s;
    QTest::newRow("other scripts") << u"Схемы 回路"_s;
    QTest::newRow("blank at the end") << u"copy "_s;
}

void TestLaunch::startsOnceInItsFolder()
{
    QFETCH(const QString, name);
    installApplication(name);
    const QString folder = m_sandbox->path(name);
    launchApplication(folder);
    const QString where = QFileInfo(folder).canonicalFilePath();
    QCOMPARE(launches(), QStringList { folder + "/VarnelSolutions.exe|0|"_L1 + where });
}

void TestLaunch::everyCallStartsAnother()
{
    installApplication(u"copy"_s);
    launchApplication(m_sandbox->path(u"copy"_s));
    launchApplication(m_sandbox->path(u"copy/"_s));
    QCOMPARE(launches().size(), 2);
}

void TestLaunch::relativeFolder()
{
    const auto restore = qScopeGuard([folder = QDir::currentPath()] { QDir::setCurrent(folder); });
    installApplication(u"copy"_s);
    QVERIFY(QDir::setCurrent(m_sandbox->path(u"."_s)));
    launchApplication(u"copy"_s);
    const QStringList lines = launches();
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines[0].section(u'|', 2), QFileInfo(m_sandbox->path(u"copy"_s)).canonicalFilePath());
}

void TestLaunch::nothingToStart_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no folder") << u"gone"_s;
    QTest::newRow("empty folder") << u"empty"_s;
    QTest::newRow("other program") << u"other"_s;
    QTest::newRow("program below") << u"above"_s;
    QTest::newRow("file for a folder") << u"file"_s;
    QTest::newRow("folder for a program") << u"folder"_s;
    QTest::newRow("must not be run") << u"locked"_s;
}

void TestLaunch::nothingToStart()
{
    QFETCH(const QString, name);
    QVERIFY(QDir().mkpath(m_sandbox->path(u"empty"_s)));
    QVERIFY(QDir().mkpath(m_sandbox->path(u"folder/VarnelSolutions.exe"_s)));
    installApplication(u"above/below"_s);
    m_sandbox->write(u"file"_s, kApplication);
    m_sandbox->write(u"locked/VarnelSolutions.exe"_s, kApplication);
    const QString other = m_sandbox->write(u"other/Other.exe"_s, kApplication);
    QVERIFY(QFile::setPermissions(other, QFile::ReadOwner | QFile::ExeOwner));
    launchApplication(m_sandbox->path(name));
    QCOMPARE(launches(), QStringList());
}

QTEST_GUILESS_MAIN(TestLaunch)
#include "tst_launch.moc"
