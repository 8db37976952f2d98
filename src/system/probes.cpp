#include "system/probes.h"

#include "files/installpath.h"
#include "system/machine.h"
#include "system/registry.h"
#include "system/screenpixels.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>
#include <QStorageInfo>
#include <QSysInfo>

using namespace Qt::Literals::StringLiterals;

namespace {

CheckResult checkOperatingSystem()
{
    const QString key = uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows NT\CurrentVersion)"_s;
    return judgeOperatingSystem({
        .productName = readRegistryText(key, u"ProductName"_s),
        .displayVersion = readRegistryText(key, u"DisplayVersion"_s),
        .build = readRegistryInt(key, u"CurrentBuild"_s),
        .prettyName = QSysInfo::prettyProductName(),
        .architecture = QSysInfo::currentCpuArchitecture(),
    });
}

CheckResult checkProcessor()
{
    const QString key = uR"(HKEY_LOCAL_MACHINE\HARDWARE\DESCRIPTION\System\CentralProcessor\0)"_s;
    QString name = readRegistryText(key, u"ProcessorNameString"_s);
    if (name.isEmpty())
        name = processorName();
    return judgeProcessor(name, readRegistryInt(key, u"~MHz"_s),
                          QSysInfo::currentCpuArchitecture());
}

CheckResult checkDisplay()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return judgeDisplay(std::nullopt, 0.0);
    const QSize pixels = primaryScreenPixels().value_or(
        unscaledScreenSize(screen->size(), screen->devicePixelRatio()));
    return judgeDisplay(pixels, screen->refreshRate());
}

CheckResult checkDotNet()
{
    return judgeDotNet(readRegistryInt(
        uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\NET Framework Setup\NDP\v4\Full)"_s,
        u"Release"_s));
}

CheckResult checkWebView()
{
    static const QString client = u"{F3017226-FE2A-4295-8BDF-00C3A9A7E4C5}"_s;
    for (const QString &parent : {
             uR"(HKEY_LOCAL_MACHINE\SOFTWARE\WOW6432Node\Microsoft\EdgeUpdate\Clients\)"_s,
             uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\EdgeUpdate\Clients\)"_s,
             uR"(HKEY_CURRENT_USER\SOFTWARE\Microsoft\EdgeUpdate\Clients\)"_s,
         }) {
        if (const QString version = readRegistryText(parent + client, u"pv"_s); !version.isEmpty())
            return judgeWebView(version);
    }
    return judgeWebView(QString());
}

int smartAppControlState()
{
    return readRegistryInt(uR"(HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Control\CI\Policy)"_s,
                           u"VerifiedAndReputablePolicyState"_s);
}

/// The parent folder, by the text alone; empty if there is none.
QString parentFolder(const QString &path)
{
    const qsizetype separator = path.lastIndexOf(QDir::separator());
    if (separator < 0)
        return {};
    const QString root = path.first(separator + 1);
    return isDriveRoot(root) ? root : path.first(separator);
}

/// The nearest folder from `path` upwards that exists, else the file system's root.
QString nearestExistingFolder(const QString &path)
{
    QString folder = path;
    while (!folder.isEmpty() && !QFileInfo(folder).isDir() && !isDriveRoot(folder))
        folder = parentFolder(folder);
    return QFileInfo(folder).isDir() ? folder : QDir::rootPath();
}

} // namespace

CheckResult checkDiskSpace(const QString &destinationPath)
{
    const QStorageInfo volume(nearestExistingFolder(QDir::toNativeSeparators(destinationPath)));
    return judgeDiskSpace(volume.bytesAvailable(), QDir::toNativeSeparators(volume.rootPath()));
}

bool isSmartAppControlOn()
{
    return smartAppControlState() == kSmartAppControlOn;
}

bool vcRuntimePresent()
{
    return hasVcRuntime(systemFolder());
}

bool hasVcRuntime(const QString &folder)
{
    return !folder.isEmpty() && QFileInfo::exists(folder + "/vcruntime140.dll"_L1)
        && QFileInfo::exists(folder + "/vcruntime140_1.dll"_L1);
}

QList<CheckResult> runSystemChecks(const QString &destinationPath)
{
    return {
        checkOperatingSystem(),
        checkProcessor(),
        judgeMemory(totalMemory()),
        checkDiskSpace(destinationPath),
        checkDisplay(),
        checkDotNet(),
        judgeVcRuntime(vcRuntimePresent()),
        checkWebView(),
        judgeSmartAppControl(smartAppControlState()),
    };
}
