#include "files/programsinuse.h"

#include <QDirIterator>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

bool hasProgramsInUse(const QString &folder, const QStringList &except)
{
    QStringList spared;
    for (const QString &path : except)
        spared.append(QFileInfo(path).absoluteFilePath());
    QDirIterator files(QFileInfo(folder).absoluteFilePath(), { u"*.exe"_s, u"*.dll"_s },
                       QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        if (!spared.contains(path, Qt::CaseInsensitive) && isProgramInUse(path))
            return true;
    }
    return false;
}
