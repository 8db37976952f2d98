#include "files/privatefolder.h"

#include <QFile>

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

bool PrivateFolderSystem::make(const QString &path, QString *error)
{
    if (mkdir(QFile::encodeName(path).constData(), S_IRWXU) == 0)
        return true;
    *error = qt_error_string(errno);
    return false;
}

bool PrivateFolderSystem::isOurs(const QString &path)
{
    struct stat facts = {};
    return lstat(QFile::encodeName(path).constData(), &facts) == 0 && S_ISDIR(facts.st_mode)
        && facts.st_uid == geteuid() && (facts.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

void PrivateFolderSystem::removeAtRestart(const QString &) {}
