#include "system/screenpixels.h"

#include <QGuiApplication>

#include <windows.h>

using namespace Qt::Literals::StringLiterals;

std::optional<QSize> primaryScreenPixels()
{
    if (QGuiApplication::platformName() != "windows"_L1)
        return std::nullopt; // there is no screen
    MONITORINFOEXW monitor {};
    monitor.cbSize = sizeof monitor;
    DEVMODEW mode {};
    mode.dmSize = sizeof mode;
    if (!GetMonitorInfoW(MonitorFromPoint({ 0, 0 }, MONITOR_DEFAULTTOPRIMARY), &monitor)
        || !EnumDisplaySettingsW(monitor.szDevice, ENUM_CURRENT_SETTINGS, &mode))
        return std::nullopt;
    return QSize(int(mode.dmPelsWidth), int(mode.dmPelsHeight));
}
