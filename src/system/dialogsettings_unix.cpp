#include "system/dialogsettings.h"

#include <QSettings>

void withoutDialogSettings(const std::function<void()> &showDialog)
{
    // Settings are files in a folder. This path is no folder, so they are neither read nor written.
    // It stays so afterwards, as this program has no settings of its own.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
    showDialog();
}
