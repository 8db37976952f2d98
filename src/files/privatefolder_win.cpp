#include "files/elevation.h"
#include "files/privatefoldernative.h"

#include <QByteArray>
#include <QDir>

#include <qt_windows.h>

#include <aclapi.h>
#include <sddl.h>
#include <winternl.h>

#include <memory>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

struct LocalDeleter
{
    void operator()(void *memory) const { LocalFree(memory); }
};
template <typename T>
using Local = std::unique_ptr<T, LocalDeleter>;

const wchar_t *wide(const QString &text)
{
    return reinterpret_cast<const wchar_t *>(text.utf16());
}

/// In the form of security descriptors; empty if Windows does not tell.
QString sidText(PSID sid)
{
    wchar_t *text = nullptr;
    if (!ConvertSidToStringSidW(sid, &text))
        return {};
    const Local<wchar_t> owner(text);
    return QString::fromWCharArray(text);
}

QString userSid()
{
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token))
        return {};
    DWORD size = 0;
    GetTokenInformation(token, TokenUser, nullptr, 0, &size);
    QByteArray information(size, '\0');
    const bool isKnown = GetTokenInformation(token, TokenUser, information.data(), size, &size);
    CloseHandle(token);
    return isKnown
        ? sidText(reinterpret_cast<const TOKEN_USER *>(information.constData())->User.Sid)
        : QString();
}

/// Who owns the file or folder that is open; empty if Windows does not tell.
QString ownerSid(HANDLE handle)
{
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetSecurityInfo(handle, SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr,
                        nullptr, nullptr, &descriptor)
        != ERROR_SUCCESS)
        return {};
    const Local<void> ownsDescriptor(descriptor);
    return sidText(owner);
}

/// The folder itself, also if it leads elsewhere. While it is open it can't be renamed or removed,
/// for which the right to list its files has to be among those that are asked for.
HANDLE openFolder(const QString &path)
{
    return CreateFileW(wide(QDir::toNativeSeparators(path)), FILE_LIST_DIRECTORY | READ_CONTROL,
                       FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                       FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
}

/// Where the folder is that was opened by `path`, whatever links have led there. That path itself
/// if Windows does not tell, as for a drive that its mount manager does not know.
QString pathWithoutLinks(HANDLE handle, const QString &path)
{
    const DWORD size = GetFinalPathNameByHandleW(handle, nullptr, 0, FILE_NAME_NORMALIZED);
    std::vector<wchar_t> text(size);
    const DWORD length = GetFinalPathNameByHandleW(handle, text.data(), size, FILE_NAME_NORMALIZED);
    if (length == 0 || length >= size)
        return path;
    QString found = QString::fromWCharArray(text.data(), length);
    if (found.startsWith(uR"(\\?\UNC\)"_s))
        found.remove(2, 6); // a server's
    else if (found.startsWith(uR"(\\?\)"_s))
        found.remove(0, 4);
    return QDir::fromNativeSeparators(found);
}

bool isFolder(HANDLE handle)
{
    FILE_BASIC_INFO facts = {};
    return GetFileInformationByHandleEx(handle, FileBasicInfo, &facts, sizeof facts)
        && (facts.FileAttributes & FILE_ATTRIBUTE_DIRECTORY)
        && !(facts.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT);
}

} // namespace

std::unique_ptr<PrivateFolder::Native> PrivateFolder::Native::make(const QString &path,
                                                                   QString *error)
{
    // The owner of a folder may change its access rights. What administrators own cannot have been
    // made by a program of the same user that is not elevated. Nothing is inherited from the temp
    // folder ("P"); files inside inherit this ("OICI").
    const QString description = isElevated() ? u"O:BAD:P(A;OICI;FA;;;BA)(A;OICI;FA;;;SY)"_s
                                             : u"O:%1D:P(A;OICI;FA;;;%1)"_s.arg(userSid());
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(wide(description), SDDL_REVISION_1,
                                                              &descriptor, nullptr)) {
        *error = qt_error_string(int(GetLastError()));
        return nullptr;
    }
    const Local<void> ownsDescriptor(descriptor);

    // The function that all others end in: it alone makes a folder and opens it in one step, so
    // that nobody who may write to the temp folder can put another one in its place in between.
    QString native = QDir::toNativeSeparators(path);
    if (native.startsWith(uR"(\\)"_s))
        native.replace(0, 1, uR"(\??\UNC)"_s); // a server's
    else
        native.prepend(uR"(\??\)"_s);
    UNICODE_STRING name = {};
    name.Buffer = reinterpret_cast<wchar_t *>(native.data());
    name.Length = USHORT(native.size() * qsizetype(sizeof(wchar_t)));
    name.MaximumLength = name.Length;
    OBJECT_ATTRIBUTES attributes = {};
    InitializeObjectAttributes(&attributes, &name, OBJ_CASE_INSENSITIVE, nullptr, descriptor);
    HANDLE handle = nullptr;
    IO_STATUS_BLOCK status = {};
    const NTSTATUS result =
        NtCreateFile(&handle, FILE_LIST_DIRECTORY | READ_CONTROL | SYNCHRONIZE, &attributes,
                     &status, nullptr, FILE_ATTRIBUTE_NORMAL, FILE_SHARE_READ | FILE_SHARE_WRITE,
                     FILE_CREATE, FILE_DIRECTORY_FILE | FILE_SYNCHRONOUS_IO_NONALERT, nullptr, 0);
    if (NT_SUCCESS(result))
        return std::unique_ptr<Native>(new Native(handle, path));
    *error = qt_error_string(int(RtlNtStatusToDosError(result)));
    return nullptr;
}

PrivateFolder::Native::Native(void *handle, const QString &path)
    : m_path(pathWithoutLinks(handle, path)), m_handle(handle)
{}

PrivateFolder::Native::~Native()
{
    CloseHandle(m_handle);
}

std::unique_ptr<PrivateFolder::Native>
PrivateFolder::Native::withSameOwner(const QString &path) const
{
    HANDLE handle = openFolder(path);
    if (handle == INVALID_HANDLE_VALUE)
        return nullptr;
    std::unique_ptr<Native> folder(new Native(handle, path));
    const QString owner = ownerSid(handle);
    return isFolder(handle) && !owner.isEmpty() && owner == ownerSid(m_handle) ? std::move(folder)
                                                                               : nullptr;
}

void PrivateFolder::Native::removeAtRestart(const QString &path)
{
    const QDir folder(path);
    QStringList paths = folder.entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (QString &name : paths)
        name = folder.absoluteFilePath(name);
    paths.append(path); // last, as it has to be empty by then
    for (const QString &one : std::as_const(paths))
        MoveFileExW(wide(QDir::toNativeSeparators(one)), nullptr, MOVEFILE_DELAY_UNTIL_REBOOT);
}
