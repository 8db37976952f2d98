#include "support/environment.h"

#include <cstdlib>

void setVariable(const char *name, const QString &value)
{
    _wputenv_s(reinterpret_cast<const wchar_t *>(QString::fromLatin1(name).utf16()),
               reinterpret_cast<const wchar_t *>(value.utf16()));
}
