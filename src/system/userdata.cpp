#include "system/userdata.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace {

bool isLink(const QString &path)
{
    const QFileInfo info(path);
    return info.isSymLink() || info.isJunction();
}

} // namespace

void removeUserData()
{
    const QString root = QDir::cleanPath(qEnvironmentVariable("APPDATA"));
    if (root.isEmpty() || QDir::isRelativePath(root))
        return;
    const QString target = QDir::cleanPath(root + "/Varnel Schematics/Varnel Schematics"_L1);
    if (target == root || !target.startsWith(root + u'/'))
        return;
    if (isLink(target) || isLink(QFileInfo(target).path()))
        return;
    QDir folder(target);
    if (folder.exists())
        folder.removeRecursively();
}
