#include "engine/regularfile.h"

#include <QFileInfo>

bool openRegularFile(QFile &file)
{
    return QFileInfo(file.fileName()).isFile()
        && file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}
