#include "files/privatefolder.h"
#include "support/sandbox.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#ifdef Q_OS_WIN
#include <qt_windows.h>

#include <aclapi.h>
#include <sddl.h>
#endif

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
    PrivateFolder folder;
    QFile lock;
    QFile program;
    if (!folder.create())
        return {};
    lock.setFileName(folder.filePath(u"lock"_s));
    program.setFileName(folder.filePath(u"VarnelEngine.exe"_s));
    if (!lock.open(QIODevice::ReadOnly))
        return {};
    QByteArrayList lines = lock.readAll().split('\n');
    lock.close();
    folder.leaveUntilRestart();
    lines[0] = "4194000"; // the process of this number ended long ago
    return lock.open(QIODevice::WriteOnly) && lock.write(lines.join('\n')) > 0
            && program.open(QIODevice::WriteOnly) && program.write("engine") > 0
        ? folder.path()
        : QString();
}

#ifdef Q_OS_WIN
/// Who may do what with the folder, as Windows writes it.
QString accessTo(const QString &path)
{
    const QString native = QDir::toNativeSeparators(path);
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    wchar_t *text = nullptr;
    if (GetNamedSecurityInfoW(reinterpret_cast<const wchar_t *>(native.utf16()), SE_FILE_OBJECT,
                              DACL_SECURITY_INFORMATION, nullptr, nullptr, nullptr, nullptr,
                              &descriptor)
            != ERROR_SUCCESS
        || !ConvertSecurityDescriptorToStringSecurityDescriptorW(
            descriptor, SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &text, nullptr))
        return {};
    const QString access = QString::fromWCharArray(text);
    LocalFree(text);
    LocalFree(descriptor);
    return access;
}
#endif

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
        second.removeAbandoned();
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
    const QString access = accessTo(folder.path());
    QVERIFY2(access.contains(";;;SY)"_L1), qPrintable(access));
    for (const char *others : { ";;;WD)", ";;;BU)", ";;;AU)" })
        QVERIFY2(!access.contains(QLatin1StringView(others)), qPrintable(access));
    QVERIFY(!QDir().rename(folder.path(), folder.path() + ".old"_L1));
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
    PrivateFolder folder;
    QVERIFY(folder.create());
    QCOMPARE(inTemp(sandbox).size(), 3);
    folder.removeAbandoned();
    QCOMPARE(inTemp(sandbox), QStringList(QFileInfo(folder.path()).fileName()));
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
    PrivateFolder folder;
    QVERIFY(folder.create());
    const QStringList before = inTemp(sandbox);
    folder.removeAbandoned();
    QCOMPARE(inTemp(sandbox), before);
#ifndef Q_OS_WIN
    QVERIFY(QFile::exists(sandbox.path(u"aside/VarnelEngine.exe"_s)));
    QVERIFY(QFile::exists(sandbox.path(u"temp/varnel_private_open/file"_s)));
#endif
}

QTEST_GUILESS_MAIN(TestPrivateFolder)
#include "tst_privatefolder.moc"
