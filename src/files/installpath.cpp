#include "files/installpath.h"

#include "product/product.h"

#include <QDir>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

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

namespace {

QString cleaned(const QString &path)
{
    // A drive is set aside, so that a Windows path is cleaned as one wherever we run.
    const bool hasDrive = path.size() >= 2 && isDriveRoot(QStringView(path).first(2));
    const QString drive = path.first(hasDrive ? 2 : 0);
    QString rest = path.sliced(drive.size());
    if (hasDrive) {
        rest.replace(u'\\', u'/');
        while (rest.startsWith("//"_L1)) // which would name a server
            rest.remove(0, 1);
    }
    rest = QDir::cleanPath(rest);
    // Above a root there is only the root.
    while (rest == "/.."_L1 || rest.startsWith("/../"_L1))
        rest.replace(0, qMin(rest.size(), 4), u"/"_s);
    // Windows drops blanks and dots at the end of a name, so that none is left of these.
    const auto isDropped = [](QChar c) { return c == u' ' || c == u'.' || c == u'/'; };
    if (hasDrive && std::all_of(rest.begin(), rest.end(), isDropped))
        rest = u"/"_s;
    return drive + rest;
}

} // namespace

QString installFolder(const QString &path)
{
    // Twice, as a path without a drive can lead to one with it.
    const QString folder = cleaned(cleaned(path));
    if (!isDriveRoot(folder))
        return folder;
    const QStringView drive = QStringView(folder).first(folder == u'/' ? 0 : 2);
    return drive + u'/' + Product::kName;
}
