#include "files/privatefolder.h"

#include <QByteArray>
#include <QDir>

#include <qt_windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <memory>

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

QByteArray tokenInformation(TOKEN_INFORMATION_CLASS kind)
{
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token))
        return {};
    DWORD size = 0;
    GetTokenInformation(token, kind, nullptr, 0, &size);
    QByteArray information(size, '\0');
    if (!GetTokenInformation(token, kind, information.data(), size, &size))
        information.clear();
    CloseHandle(token);
    return information;
}

bool isElevated()
{
    const QByteArray information = tokenInformation(TokenElevation);
    return size_t(information.size()) >= sizeof(TOKEN_ELEVATION)
        && reinterpret_cast<const TOKEN_ELEVATION *>(information.constData())->TokenIsElevated;
}

/// In the form of security descriptors; empty if Windows does not tell.
QString userSid()
{
    const QByteArray information = tokenInformation(TokenUser);
    if (size_t(information.size()) < sizeof(TOKEN_USER))
        return {};
    wchar_t *text = nullptr;
    if (!ConvertSidToStringSidW(
            reinterpret_cast<const TOKEN_USER *>(information.constData())->User.Sid, &text))
        return {};
    const Local<wchar_t> owner(text);
    return QString::fromWCharArray(text);
}

/// Who owns the folder, as an owner may change who may enter. Programs of the same user that are
/// not elevated cannot make anything that administrators own.
QString ownerSid()
{
    return isElevated() ? u"BA"_s : userSid();
}

} // namespace

bool PrivateFolderSystem::make(const QString &path, QString *error)
{
    const QString owner = ownerSid();
    // Nothing is inherited from the temp folder ("P"); files inside inherit this ("OICI").
    QString description = u"O:%1D:P(A;OICI;FA;;;%1)"_s.arg(owner);
    if (isElevated())
        description += "(A;OICI;FA;;;SY)"_L1;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(wide(description), SDDL_REVISION_1,
                                                              &descriptor, nullptr)) {
        *error = qt_error_string(int(GetLastError()));
        return false;
    }
    const Local<void> ownsDescriptor(descriptor);
    SECURITY_ATTRIBUTES attributes = { sizeof attributes, descriptor, FALSE };
    if (CreateDirectoryW(wide(QDir::toNativeSeparators(path)), &attributes))
        return true;
    *error = qt_error_string(int(GetLastError()));
    return false;
}

bool PrivateFolderSystem::isOurs(const QString &path)
{
    const QString native = QDir::toNativeSeparators(path);
    const DWORD facts = GetFileAttributesW(wide(native));
    if (facts == INVALID_FILE_ATTRIBUTES || !(facts & FILE_ATTRIBUTE_DIRECTORY)
        || (facts & FILE_ATTRIBUTE_REPARSE_POINT))
        return false;
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetNamedSecurityInfoW(wide(native), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner,
                              nullptr, nullptr, nullptr, &descriptor)
        != ERROR_SUCCESS)
        return false;
    const Local<void> ownsDescriptor(descriptor);
    PSID expected = nullptr;
    if (!ConvertStringSidToSidW(wide(ownerSid()), &expected))
        return false;
    const Local<void> ownsExpected(expected);
    return EqualSid(owner, expected);
}

void PrivateFolderSystem::removeAtRestart(const QString &path)
{
    const QDir folder(path);
    QStringList paths = folder.entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (QString &name : paths)
        name = folder.absoluteFilePath(name);
    paths.append(path); // last, as it has to be empty by then
    for (const QString &one : std::as_const(paths))
        MoveFileExW(wide(QDir::toNativeSeparators(one)), nullptr, MOVEFILE_DELAY_UNTIL_REBOOT);
}
