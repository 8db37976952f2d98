#include "system/machine.h"

#include <array>

#include <windows.h>

std::optional<quint64> totalMemory()
{
    MEMORYSTATUSEX status {};
    status.dwLength = sizeof status;
    if (!GlobalMemoryStatusEx(&status))
        return std::nullopt;
    return status.ullTotalPhys;
}

QString processorName()
{
    return {};
}

QString systemFolder()
{
    std::array<wchar_t, MAX_PATH> folder {};
    const UINT length = GetSystemDirectoryW(folder.data(), UINT(folder.size()));
    return length < folder.size() ? QString::fromWCharArray(folder.data(), int(length)) : QString();
}

bool desktopPrefersReducedMotion()
{
    BOOL animated = TRUE;
    return SystemParametersInfoW(SPI_GETCLIENTAREAANIMATION, 0, &animated, 0) && !animated;
}
