#include "files/programsinuse.h"

#include <QDir>

#include <qt_windows.h>

bool isProgramInUse(const QString &path)
{
    // Share everything, so that opening fails if the file runs or is loaded, but not if it is read.
    const QString native = QDir::toNativeSeparators(path);
    HANDLE handle = CreateFileW(reinterpret_cast<const wchar_t *>(native.utf16()), GENERIC_WRITE,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return GetLastError() == ERROR_SHARING_VIOLATION;
    CloseHandle(handle);
    return false;
}
