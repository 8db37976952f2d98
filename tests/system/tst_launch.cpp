#include "support/sandbox.h"
#include "support/stricttest.h"
#include "system/launch.h"
#include "system/offspring.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <optional>

using namespace Qt::Literals::StringLiterals;

class TestLaunch : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void startsOnceInItsFolder();
    void relativeFolder();
    void nothingToStart();

private:
    void installApplication(const QString &folder) const;
    QStringList launches() const;

    std::optional<Sandbox> m_sandbox;
};

void TestLaunch::initTestCase()
{
    if (!adoptOffspring())
        QSKIP("Here nobody can tell when a detached process has ended.");
}

void TestLaunch::init()
{
    StrictTest::init();
    m_sandbox.emplace();
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

void TestLaunch::startsOnceInItsFolder()
{
    QStringList names { u"copy"_s, u"a 'b' c"_s, u"a $HOME %TEMP% `x` ; & ^ (b)"_s, u"a %1 %2"_s,
                        u"Схемы 回路"_s };
#ifndef Q_OS_WIN
    // There are no such names on Windows.
    names << u"a \"b\""_s << u"a * \\ ? | <b>"_s << u"copy "_s;
#endif
    QStringList expected;
    for (const QString &name : std::as_const(names)) {
        installApplication(name);
        const QString folder = m_sandbox->path(name);
        launchApplication(folder);
        const QString where = QFileInfo(folder).canonicalFilePath();
        expected << QDir::toNativeSeparators(folder + "/VarnelSolutions.exe"_L1) + u'\t'
                + QDir::toNativeSeparators(where);
        QCOMPARE(launches(), expected);
    }
    launchApplication(m_sandbox->path(u"copy/"_s));
    QCOMPARE(launches().size(), expected.size() + 1);
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

void TestLaunch::nothingToStart()
{
    QVERIFY(QDir().mkpath(m_sandbox->path(u"folder for a program/VarnelSolutions.exe"_s)));
    QStringList names { u"no folder"_s, u"folder for a program"_s };
#ifndef Q_OS_WIN
    installApplication(u"must not be run"_s);
    QVERIFY(QFile::setPermissions(m_sandbox->path(u"must not be run/VarnelSolutions.exe"_s),
                                  QFile::ReadOwner | QFile::WriteOwner));
    names << u"must not be run"_s;
#endif
    for (const QString &name : std::as_const(names)) {
        launchApplication(m_sandbox->path(name));
        QVERIFY2(launches().isEmpty(), qPrintable(name));
    }
}

QTEST_GUILESS_MAIN(TestLaunch)
#include "tst_launch.moc"
