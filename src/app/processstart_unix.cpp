#include "app/processstart.h"

#include <QFile>

void loadFromSystemFolderOnly() {}

bool isElevated()
{
    return false;
}

QStringList processArguments(int argc, const char *const *argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments += QFile::decodeName(argv[i]);
    return arguments;
}
