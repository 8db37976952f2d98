#include "files/privatefoldernative.h"

#include <QFile>

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

std::unique_ptr<PrivateFolder::Native> PrivateFolder::Native::make(const QString &path,
                                                                   QString *error)
{
    if (mkdir(QFile::encodeName(path).constData(), S_IRWXU) == 0)
        return std::unique_ptr<Native>(new Native(nullptr, path));
    *error = qt_error_string(errno);
    return nullptr;
}

PrivateFolder::Native::Native(void *handle, const QString &path) : m_path(path), m_handle(handle) {}

PrivateFolder::Native::~Native() = default;

std::unique_ptr<PrivateFolder::Native>
PrivateFolder::Native::withSameOwner(const QString &path) const
{
    struct stat facts = {};
    const bool isOurs = lstat(QFile::encodeName(path).constData(), &facts) == 0
        && S_ISDIR(facts.st_mode) && facts.st_uid == geteuid()
        && (facts.st_mode & (S_IRWXG | S_IRWXO)) == 0;
    return std::unique_ptr<Native>(isOurs ? new Native(nullptr, path) : nullptr);
}

void PrivateFolder::Native::removeAtRestart(const QString &) {}
