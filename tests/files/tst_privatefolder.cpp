#include "files/privatefolder.h"
#include "support/sandbox.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

QStringList inTemp(const Sandbox &sandbox)
{
    return QDir(sandbox.tempFolder())
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
}

/// A folder as a process leaves it that is killed.
QString abandonedFolder()
{
    QString path;
    {
        PrivateFolder folder;
        if (!folder.create())
            return {};
        path = folder.path();
        folder.leaveUntilRestart();
    }
    // The process of this number ended long ago.
    QFile lock(path + "/lock"_L1);
    QFile program(path + "/VarnelEngine.exe"_L1);
    if (!lock.open(QIODevice::WriteOnly) || !program.open(QIODevice::WriteOnly))
        return {};
    lock.write("4194000\ntst_privatefolder\n" + QSysInfo::machineHostName().toUtf8() + "\n");
    program.write("engine");
    return path;
}

} // namespace

class TestPrivateFolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void goesWithItsFiles();
    void nobodyElseMayEnter();
    void abandonedOnesAreRemoved();
    void whatIsNotOursStays();
};

void TestPrivateFolder::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void TestPrivateFolder::goesWithItsFiles()
{
    const Sandbox sandbox;
    {
        PrivateFolder first;
        PrivateFolder second;
        QVERIFY2(first.create(), qPrintable(first.errorString()));
        QVERIFY(second.create());
        QVERIFY(first.path() != second.path());
        QFile file(first.filePath(u"program.exe"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        // Somebody who uses one does not lose it to a process that begins.
        PrivateFolder::removeAbandoned();
        QCOMPARE(inTemp(sandbox).size(), 2);
    }
    QCOMPARE(inTemp(sandbox), QStringList());
}

void TestPrivateFolder::nobodyElseMayEnter()
{
    const Sandbox sandbox;
    PrivateFolder folder;
    QVERIFY(folder.create());
#ifdef Q_OS_WIN
    QProcess facts;
    facts.start(u"icacls"_s, { QDir::toNativeSeparators(folder.path()) });
    if (!facts.waitForFinished())
        QSKIP("This system has no program that tells who may enter a folder.");
    const QString text = QString::fromLocal8Bit(facts.readAll());
    QVERIFY2(!text.contains("Everyone"_L1) && !text.contains("(I)"_L1), qPrintable(text));
#else
    const auto mine = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadUser
        | QFile::WriteUser | QFile::ExeUser;
    QCOMPARE(QFileInfo(folder.path()).permissions(), mine);
#endif
}

void TestPrivateFolder::abandonedOnesAreRemoved()
{
    const Sandbox sandbox;
    QVERIFY(!abandonedFolder().isEmpty());
    QVERIFY(!abandonedFolder().isEmpty());
    QCOMPARE(inTemp(sandbox).size(), 2);
    PrivateFolder::removeAbandoned();
    QCOMPARE(inTemp(sandbox), QStringList());
}

void TestPrivateFolder::whatIsNotOursStays()
{
    const Sandbox sandbox;
    const QDir temp(sandbox.tempFolder());
    // A folder of another name; one with a folder inside, which we do not make; a file.
    QVERIFY(temp.mkpath(u"else/deeper"_s));
    const QString abandoned = abandonedFolder();
    QVERIFY(QDir(abandoned).mkdir(u"deeper"_s));
    sandbox.write(u"temp/varnel_private_file"_s, "file");
#ifndef Q_OS_WIN
    // A link to a folder of ours elsewhere, and a folder that others may write to.
    QVERIFY(QDir().rename(abandoned, sandbox.path(u"aside"_s)));
    QVERIFY(QFile::link(sandbox.path(u"aside"_s), abandoned));
    QVERIFY(temp.mkdir(u"varnel_private_open"_s));
    QVERIFY(
        QFile::setPermissions(temp.filePath(u"varnel_private_open"_s), QFile::Permissions(0x7777)));
    sandbox.write(u"temp/varnel_private_open/file"_s, "file");
#endif
    const QStringList before = inTemp(sandbox);
    PrivateFolder::removeAbandoned();
    QCOMPARE(inTemp(sandbox), before);
#ifndef Q_OS_WIN
    QVERIFY(QFile::exists(sandbox.path(u"aside/VarnelEngine.exe"_s)));
    QVERIFY(QFile::exists(sandbox.path(u"temp/varnel_private_open/file"_s)));
#endif
}

QTEST_GUILESS_MAIN(TestPrivateFolder)
#include "tst_privatefolder.moc"
