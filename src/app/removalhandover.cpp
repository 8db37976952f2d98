#include "app/removalhandover.h"

#include "files/privatefolder.h"
#include "system/launch.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

int handOverRemoval(const QString &uninstaller)
{
    const QString self = QCoreApplication::applicationFilePath();
    PrivateFolder folder;
    if (!folder.create())
        return 1;
    folder.removeAbandoned(); // of removals that were called off
    const QString copy = folder.filePath(QFileInfo(self).fileName());
    if (!QFile::copy(self, copy)
        || !startAndAwaitWindow(copy, { u"--uninstall"_s, u"--uninstaller"_s, uninstaller }))
        return 1;
    folder.leaveUntilRestart();
    return 0;
}
