#include "system/launch.h"

#include "product/product.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>

void launchApplication(const QString &folder)
{
    const QString program = QDir(folder).absoluteFilePath(Product::kExecutable.toString());
    if (QFileInfo::exists(program))
        QProcess::startDetached(program, {}, folder);
}

bool startAndAwaitWindow(const QString &program, const QStringList &arguments)
{
    return QProcess::startDetached(program, arguments, QFileInfo(program).path());
}
