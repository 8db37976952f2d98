#include "files/guardedfile.h"

#include <QDir>
#include <QFileInfo>

#include <qt_windows.h>

struct GuardedFile::Handle
{
    HANDLE value;

    explicit Handle(HANDLE handle) : value(handle) {}
    ~Handle() { CloseHandle(value); }
    Q_DISABLE_COPY_MOVE(Handle)
};

GuardedFile::GuardedFile() = default;

GuardedFile::~GuardedFile() = default;

bool GuardedFile::hold(const QString &path)
{
    release();
    m_path = path;
    const QString native = QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
    HANDLE handle =
        CreateFileW(reinterpret_cast<const wchar_t *>(native.utf16()), GENERIC_READ,
                    FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        m_error = qt_error_string(int(GetLastError()));
        return false;
    }
    m_handle = std::make_unique<Handle>(handle);
    m_error.clear();
    return true;
}

void GuardedFile::release()
{
    m_handle.reset();
}
