// Tells a window that its button on the task bar has been made, as a task bar does that was started
// anew:
//
//   taskbarcreated <title>

#include <windows.h>

int wmain(int count, wchar_t **arguments)
{
    if (count != 2)
        return 2;
    const HWND window = FindWindowW(nullptr, arguments[1]);
    if (!window)
        return 1;
    // Posted would come too, but this one has been answered when it returns.
    SendMessageW(window, RegisterWindowMessageW(L"TaskbarButtonCreated"), 0, 0);
    return 0;
}
