#include "engine/installpath.h"

#include "product/product.h"

#include <QDir>

bool isDriveRoot(QStringView path)
{
    if (path == u'/')
        return true;
    if (path.size() < 2 || path.size() > 3 || path[1] != u':')
        return false;
    const char16_t drive = path[0].unicode();
    const bool isDrive = (drive >= u'A' && drive <= u'Z') || (drive >= u'a' && drive <= u'z');
    const bool endsAsRoot = path.size() == 2 || path[2] == u'/' || path[2] == u'\\';
    return isDrive && endsAsRoot;
}

QString installFolder(const QString &path)
{
    QString folder = QDir::cleanPath(path);
    // So that a Windows path is cleaned as one wherever we run.
    if (folder.size() >= 2 && isDriveRoot(QStringView(folder).first(2)))
        folder = QDir::cleanPath(folder.replace(u'\\', u'/'));
    if (!isDriveRoot(folder))
        return folder;
    const QStringView drive = QStringView(folder).first(folder == u'/' ? 0 : 2);
    return drive + u'/' + Product::kName;
}
