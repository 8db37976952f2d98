#pragma once

#include <QString>

/// Sets a variable of this process's environment, with any letters; qputenv() has only those of the
/// system's narrow text encoding.
void setVariable(const char *name, const QString &value);
