// Prints what Windows knows of a window, one "name=value" a line:
//
//   windowfacts <title> [minimize|restore]
//
// Before, it gives the window a command of its system menu.

#include <windows.h>

#include <cstdio>

int wmain(int count, wchar_t **arguments)
{
    if (count < 2 || count > 3)
        return 2;
    const HWND window = FindWindowW(nullptr, arguments[1]);
    if (!window)
        return 1;
    if (count == 3) {
        const bool minimize = lstrcmpW(arguments[2], L"minimize") == 0;
        PostMessageW(window, WM_SYSCOMMAND, minimize ? SC_MINIMIZE : SC_RESTORE, 0);
    }
    const LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE);
    std::printf("minimize-box=%d\n", (style & WS_MINIMIZEBOX) != 0);
    std::printf("system-menu=%d\n", (style & WS_SYSMENU) != 0);
    std::printf("caption=%d\n", (style & WS_CAPTION) == WS_CAPTION);
    std::printf("iconic=%d\n", IsIconic(window) != 0);
    std::printf("foreground=%d\n", GetForegroundWindow() == window);
    return 0;
}
