#include "files/privatefolder.h"
#include "support/sandbox.h"
#include "support/stricttest.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

#ifdef Q_CC_MINGW
#include <qt_windows.h>

#include <sddl.h>
#include <winternl.h>
#endif

using namespace Qt::Literals::StringLiterals;

namespace {

/// A folder as a killed process leaves it.
QString abandonedFolder()
{
    PrivateFolder folder;
    if (!folder.create())
        return {};
    QFile lock(folder.filePath(u"lock"_s));
    if (!lock.open(QIODevice::ReadOnly))
        return {};
    QByteArrayList lines = lock.readAll().split('\n');
    lock.close();
    folder.leaveUntilRestart();
    lines[0] = "4194000"; // the process of this number ended long ago
    QFile program(folder.filePath(u"VarnelEngine.exe"_s));
    return lock.open(QIODevice::WriteOnly) && lock.write(lines.join('\n')) > 0
            && program.open(QIODevice::WriteOnly) && program.write("engine") > 0
        ? folder.path()
        : QString();
}

} // namespace

#ifdef Q_CC_MINGW
// Wine keeps neither owner nor access list of a folder, so they are taken from the call that makes
// it. The linker puts these functions in place of those that they are named after.
namespace {
bool asElevated = false;
QString description; ///< of the last folder, as Windows writes it
} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
bool wrappedIsElevated() __asm__("__wrap__Z10isElevatedv");
bool wrappedIsElevated()
{
    return asElevated;
}

extern "C" {
decltype(NtCreateFile) __real_NtCreateFile;

NTSTATUS NTAPI __wrap_NtCreateFile(PHANDLE handle, ACCESS_MASK access,
                                   POBJECT_ATTRIBUTES attributes, PIO_STATUS_BLOCK status,
                                   PLARGE_INTEGER allocation, ULONG flags, ULONG sharing,
                                   ULONG disposition, ULONG options, PVOID extended, ULONG length)
{
    wchar_t *text = nullptr;
    if (ConvertSecurityDescriptorToStringSecurityDescriptorW(
            attributes->SecurityDescriptor, SDDL_REVISION_1,
            OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &text, nullptr)) {
        description = QString::fromWCharArray(text);
        LocalFree(text);
    }
    return __real_NtCreateFile(handle, access, attributes, status, allocation, flags, sharing,
                               disposition, options, extended, length);
}
}
// NOLINTEND(bugprone-reserved-identifier)
#endif

class TestPrivateFolder : public StrictTest
{
    Q_OBJECT

private Q_SLOTS:
    void nobodyElseMayEnterAndItGoesWithItsFiles();
    void ownerAndAccess();
    void abandonedOnesAreRemoved();
    void foreignFoldersAreKept();
};

void TestPrivateFolder::nobodyElseMayEnterAndItGoesWithItsFiles()
{
    const Sandbox sandbox;
    {
        PrivateFolder first;
        PrivateFolder second;
        QVERIFY2(first.create(), qPrintable(first.errorString()));
        QVERIFY(second.create());
        QVERIFY(first.path() != second.path());
#ifdef Q_OS_WIN
        QVERIFY(!QDir().rename(first.path(), first.path() + ".old"_L1));
#else
        const auto mine = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadUser
            | QFile::WriteUser | QFile::ExeUser;
        QCOMPARE(QFileInfo(first.path()).permissions(), mine);
#endif
        QFile file(first.filePath(u"program.exe"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        // A folder in use is not removed.
        second.removeAbandoned();
        QCOMPARE(sandbox.tempFiles().size(), 2);
    }
    QCOMPARE(sandbox.tempFiles(), QStringList());
}

void TestPrivateFolder::ownerAndAccess()
{
#ifndef Q_CC_MINGW
    QSKIP("Only this compiler's linker can replace a function of the system.");
#else
    const Sandbox sandbox;
    asElevated = true;
    PrivateFolder administrators;
    QVERIFY(administrators.create());
    QCOMPARE(description, u"O:BAD:P(A;OICI;FA;;;BA)(A;OICI;FA;;;SY)"_s);
    asElevated = false;
    PrivateFolder users;
    QVERIFY(users.create());
    static const QRegularExpression own(uR"(^O:(S-1-5-21-[0-9-]+)D:P\(A;OICI;FA;;;\1\)$)"_s);
    QVERIFY2(own.match(description).hasMatch(), qPrintable(description));
#endif
}

void TestPrivateFolder::abandonedOnesAreRemoved()
{
    const Sandbox sandbox;
    QVERIFY(!abandonedFolder().isEmpty());
    QVERIFY(!abandonedFolder().isEmpty());
    PrivateFolder folder;
    QVERIFY(folder.create());
    QCOMPARE(sandbox.tempFiles().size(), 3);
    folder.removeAbandoned();
    QCOMPARE(sandbox.tempFiles(), QStringList(QFileInfo(folder.path()).fileName()));
}

void TestPrivateFolder::foreignFoldersAreKept()
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
    const QStringList before = sandbox.tempFiles();
    folder.removeAbandoned();
    QCOMPARE(sandbox.tempFiles(), before);
#ifndef Q_OS_WIN
    QVERIFY(QFile::exists(sandbox.path(u"aside/VarnelEngine.exe"_s)));
    QVERIFY(QFile::exists(sandbox.path(u"temp/varnel_private_open/file"_s)));
#endif
}

QTEST_GUILESS_MAIN(TestPrivateFolder)
#include "tst_privatefolder.moc"
