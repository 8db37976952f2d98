#include "support/environment.h"

void setVariable(const char *name, const QString &value)
{
    qputenv(name, value.toUtf8());
}
