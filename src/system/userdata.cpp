#include "system/userdata.h"

#include "product/product.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace {

bool isLink(const QString &path)
{
    const QFileInfo info(path);
    return info.isSymbolicLink() || info.isJunction();
}

bool removeFile(const QString &path)
{
    if (QFile::remove(path))
        return true;
    // Windows does not delete read-only files. The target of a link must not be changed.
    return !isLink(path) && QFile::setPermissions(path, QFile::permissions(path) | QFile::WriteUser)
        && QFile::remove(path);
}

/// Removes a folder with its content. Of a link of any kind, the link is removed and the target
/// stays. QDir::removeRecursively() would follow a junction, which every user can create, and this
/// may run with administrator rights.
void removeFolder(const QString &path)
{
    const QFileInfoList entries = QDir(path).entryInfoList(QDir::AllEntries | QDir::Hidden
                                                           | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        const QString entryPath = entry.filePath();
        if (entry.isDir() && !isLink(entryPath))
            removeFolder(entryPath);
        else if (!removeFile(entryPath))
            QDir().rmdir(entryPath); // on Windows, a link to a folder is removed like a folder
    }
    QDir().rmdir(path);
}

} // namespace

void removeUserData()
{
    const QString root = QDir::cleanPath(qEnvironmentVariable("APPDATA"));
    if (root.isEmpty() || QDir::isRelativePath(root))
        return;
    const QString target = QDir::cleanPath(root + u'/' + Product::kPreferencesFolder);
    if (target == root || !target.startsWith(root + u'/'))
        return;
    if (isLink(target) || isLink(QFileInfo(target).path()))
        return;
    if (QFileInfo(target).isDir())
        removeFolder(target);
}
