#include "app/processstart.h"

#include <QFile>

void loadFromSystemFolderOnly() {}

QStringList processArguments(int argc, const char *const *argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments += QFile::decodeName(argv[i]);
    return arguments;
}
