// Prints what Windows knows of a window, one "name=value" a line:
//
//   windowfacts <title>

#include <windows.h>

#include <cstdio>

int wmain(int count, wchar_t **arguments)
{
    if (count != 2)
        return 2;
    const HWND window = FindWindowW(nullptr, arguments[1]);
    if (!window)
        return 1;
    const LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE);
    std::printf("minimize-box=%d\n", (style & WS_MINIMIZEBOX) != 0);
    std::printf("system-menu=%d\n", (style & WS_SYSMENU) != 0);
    std::printf("caption=%d\n", (style & WS_CAPTION) == WS_CAPTION);
    std::printf("iconic=%d\n", IsIconic(window) != 0);
    std::printf("foreground=%d\n", GetForegroundWindow() == window);
    return 0;
}
