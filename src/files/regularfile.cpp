#include "files/regularfile.h"

#include <QFileInfo>

bool isRegularFile(const QString &path)
{
    const QFileInfo info(path);
    return info.isFile() && !info.isSymbolicLink();
}

bool openRegularFile(QFile &file)
{
    return isRegularFile(file.fileName()) && file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}
