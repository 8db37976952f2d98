#include "support/sandbox.h"
#include "system/launch.h"
#include "system/offspring.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

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
    if (!adoptOffspring())
        QSKIP("Here nobody can tell when a detached process has ended.");
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

/// Under the application's name the stand-in engine only notes how it was started.
void TestLaunch::installApplication(const QString &folder) const
{
    QVERIFY(QDir().mkpath(m_sandbox->path(folder)));
    const QString program = m_sandbox->path(folder + "/VarnelSolutions.exe"_L1);
    QVERIFY(QFile::copy(Sandbox::setupEngine(), program));
}

/// One line per start so far, of the program, its folder and its arguments, with tabs between; none
/// is under way any more.
QStringList TestLaunch::launches() const
{
    awaitOffspring();
    return QString::fromUtf8(m_sandbox->read(u"launches.txt"_s)).split(u'\n', Qt::SkipEmptyParts);
}

void TestLaunch::startsOnceInItsFolder_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << u"copy"_s;
    QTest::newRow("blank") << u"Varnel Schematics"_s;
    QTest::newRow("apostrophes") << u"a 'b' c"_s;
    QTest::newRow("shell's signs") << u"a $HOME %TEMP% `x` ; & ^ (b)"_s;
    QTest::newRow("place markers") << u"a %1 %2"_s;
    QTest::newRow("other scripts") << u"Схемы 回路"_s;
#ifndef Q_OS_WIN
    // There are no such names on Windows.
    QTest::newRow("quotes") << u"a \"b\""_s;
    QTest::newRow("more of the shell's signs") << u"a * \\ ? | <b>"_s;
    QTest::newRow("blank at the end") << u"copy "_s;
#endif
}

void TestLaunch::startsOnceInItsFolder()
{
    QFETCH(const QString, name);
    installApplication(name);
    const QString folder = m_sandbox->path(name);
    launchApplication(folder);
    const QString where = QFileInfo(folder).canonicalFilePath();
    QCOMPARE(launches(),
             QStringList { QDir::toNativeSeparators(folder + "/VarnelSolutions.exe"_L1) + u'\t'
                           + QDir::toNativeSeparators(where) });
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
    const QString where = QFileInfo(m_sandbox->path(u"copy"_s)).canonicalFilePath();
    QCOMPARE(lines[0].section(u'\t', 1), QDir::toNativeSeparators(where));
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
#ifndef Q_OS_WIN
    QTest::newRow("must not be run") << u"locked"_s;
#endif
}

void TestLaunch::nothingToStart()
{
    QFETCH(const QString, name);
    QVERIFY(QDir().mkpath(m_sandbox->path(u"empty"_s)));
    QVERIFY(QDir().mkpath(m_sandbox->path(u"folder/VarnelSolutions.exe"_s)));
    installApplication(u"above/below"_s);
    installApplication(u"locked"_s);
    QVERIFY(QFile::setPermissions(m_sandbox->path(u"locked/VarnelSolutions.exe"_s),
                                  QFile::ReadOwner | QFile::WriteOwner));
    for (const QString &copy : { u"file"_s, u"other/Other.exe"_s }) {
        QVERIFY(QDir().mkpath(QFileInfo(m_sandbox->path(copy)).path()));
        QVERIFY(QFile::copy(Sandbox::setupEngine(), m_sandbox->path(copy)));
    }
    launchApplication(m_sandbox->path(name));
    QCOMPARE(launches(), QStringList());
}

QTEST_GUILESS_MAIN(TestLaunch)
#include "tst_launch.moc"
