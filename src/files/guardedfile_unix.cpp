#include "files/guardedfile.h"

#include <QFile>

struct GuardedFile::Handle
{
    QFile file;
};

GuardedFile::GuardedFile() = default;

GuardedFile::~GuardedFile() = default;

bool GuardedFile::hold(const QString &path)
{
    release();
    m_path = path;
    auto handle = std::make_unique<Handle>();
    handle->file.setFileName(path);
    if (!handle->file.open(QIODevice::ReadOnly)) {
        m_error = handle->file.errorString();
        return false;
    }
    m_handle = std::move(handle);
    m_error.clear();
    return true;
}

void GuardedFile::release()
{
    m_handle.reset();
}
