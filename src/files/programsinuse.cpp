#include "files/programsinuse.h"

#include <QDirIterator>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

bool hasProgramsInUse(const QString &folder, const QString &except)
{
    const QString spared = QFileInfo(except).absoluteFilePath();
    QDirIterator files(QFileInfo(folder).absoluteFilePath(), { u"*.exe"_s, u"*.dll"_s },
                       QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        if (path.compare(spared, Qt::CaseInsensitive) != 0 && isProgramInUse(path))
            return true;
    }
    return false;
}
