#include "files/heldfile.h"

#include <QFile>

struct HeldFile::Handle
{
    QFile file;
};

HeldFile::HeldFile() = default;

HeldFile::~HeldFile() = default;

bool HeldFile::hold(const QString &path)
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

void HeldFile::release()
{
    m_handle.reset();
}
