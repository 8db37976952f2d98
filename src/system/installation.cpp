#include "system/installation.h"

#include "files/installpath.h"
#include "product/product.h"
#include "system/registry.h"

#include <QDir>
#include <QFileInfo>
#include <QVersionNumber>

#include <array>

using namespace Qt::Literals::StringLiterals;

QString readUninstallValue(const QString &name)
{
    static const QString parent = uR"(\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\)"_s;
    static const std::array roots = {
        QString("HKEY_LOCAL_MACHINE"_L1 + parent),
        uR"(HKEY_LOCAL_MACHINE\SOFTWARE\WOW6432Node\Microsoft\Windows\CurrentVersion\Uninstall\)"_s,
        QString("HKEY_CURRENT_USER"_L1 + parent),
    };
    for (const QString &root : roots) {
        const QString value = readRegistryText(root + Product::kUninstallKey, name);
        if (!value.isEmpty())
            return value;
    }
    return {};
}

QString installedVersion()
{
    return readUninstallValue(u"DisplayVersion"_s);
}

bool isNewerInstalled()
{
    return QVersionNumber::fromString(installedVersion())
        > QVersionNumber::fromString(Product::kVersion);
}

QString installLocation()
{
    QString location = readUninstallValue(u"InstallLocation"_s);
    while (location.endsWith(u'\\') || location.endsWith(u'/'))
        location.chop(1);
    return QDir::toNativeSeparators(location);
}

bool isInstallFolder(const QString &folder)
{
    const QString location = QDir::fromNativeSeparators(installLocation());
    return !location.isEmpty() && QDir(folder) == QDir(location);
}

QString updateFolder(const QString &recorded)
{
    const QString given = installFolder(recorded);
    return QString(recorded).replace(u'\\', u'/') == given ? recorded
                                                           : QDir::toNativeSeparators(given);
}

bool isInstalled()
{
    const QString location = installLocation();
    return !location.isEmpty() && QFileInfo(location).isDir();
}

QString uninstallerPath()
{
    QString path = readUninstallValue(u"UninstallString"_s);
    if (path.size() >= 2 && path.startsWith(u'"') && path.endsWith(u'"'))
        path = path.sliced(1, path.size() - 2);
    if (path.isEmpty()) {
        if (const QString location = installLocation(); !location.isEmpty())
            path = uninstallerIn(location);
    }
    path = QDir::toNativeSeparators(path);
    return QFileInfo::exists(path) ? path : QString();
}

QString uninstallerIn(const QString &folder)
{
    return QDir(folder).absoluteFilePath(u"unins000.exe"_s);
}

QString defaultInstallDir()
{
    for (const char *variable : { "ProgramFiles", "ProgramW6432" }) {
        const QString folder = qEnvironmentVariable(variable);
        if (!folder.isEmpty())
            return QDir::toNativeSeparators(
                QDir(folder).absoluteFilePath(Product::kName.toString()));
    }
    return uR"(C:\Program Files\)" + Product::kName;
}
