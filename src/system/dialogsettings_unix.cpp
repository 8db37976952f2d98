#include "system/dialogsettings.h"

#include <QSettings>

void withoutDialogSettings(const std::function<void()> &showDialog)
{
    // Settings are files in a folder. This is none, so they are neither read nor written. The
    // program has no settings of its own to which this could matter later.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
    showDialog();
}
