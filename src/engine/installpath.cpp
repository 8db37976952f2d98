#include "engine/installpath.h"

#include "product/product.h"

#include <QDir>

bool isDriveRoot(QStringView path)
{
    if (path == u'/')
        return true;
    if (path.size() < 2 || path.size() > 3 || path[1] != u':')
        return false;
    const char16_t drive = path[0].toUpper().unicode();
    const bool endsAsRoot = path.size() == 2 || path[2] == u'/' || path[2] == u'\\';
    return drive >= u'A' && drive <= u'Z' && endsAsRoot;
}

QString installFolder(const QString &path)
{
    const QString folder = QDir::cleanPath(path);
    if (!isDriveRoot(folder))
        return folder;
    const QStringView drive = QStringView(folder).first(folder == u'/' ? 0 : 2);
    return drive + u'/' + Product::kName;
}
