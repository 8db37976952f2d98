#include "files/programsinuse.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// `spared` has absolute paths.
bool hasProgramsInUse(const QDir &folder, const QStringList &spared)
{
    constexpr QDir::Filters kAll = QDir::NoDotAndDotDot | QDir::Hidden | QDir::System;
    const QFileInfoList files =
        folder.entryInfoList({ u"*.exe"_s, u"*.dll"_s }, QDir::Files | kAll);
    for (const QFileInfo &file : files) {
        const QString path = file.absoluteFilePath();
        if (!spared.contains(path, Qt::CaseInsensitive) && isProgramInUse(path))
            return true;
    }
    const QFileInfoList folders = folder.entryInfoList(QDir::Dirs | kAll);
    // One that is a link may lead back to where we come from.
    return std::any_of(folders.begin(), folders.end(), [&](const QFileInfo &inner) {
        return !inner.isSymLink() && !inner.isJunction()
            && hasProgramsInUse(QDir(inner.absoluteFilePath()), spared);
    });
}

} // namespace

bool hasProgramsInUse(const QString &folder, const QStringList &except)
{
    QStringList spared;
    for (const QString &path : except)
        spared.append(QFileInfo(path).absoluteFilePath());
    return hasProgramsInUse(QDir(QFileInfo(folder).absoluteFilePath()), spared);
}
