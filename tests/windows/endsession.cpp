// Ends the session as far as a window can tell, and takes it back:
//
//   endsession <title>
//
// Prints what the window has answered, once for each time it was asked: 1 if the session may end.
// Windows asks every window and then tells each whether the session ends now. Here it never does.

#include <windows.h>

#include <cstdio>

int wmain(int count, wchar_t **arguments)
{
    if (count != 2)
        return 2;
    const HWND window = FindWindowW(nullptr, arguments[1]);
    if (!window)
        return 1;
    for (int i = 0; i < 2; ++i) {
        const LRESULT answer = SendMessageW(window, WM_QUERYENDSESSION, 0, 0);
        SendMessageW(window, WM_ENDSESSION, FALSE, 0);
        std::printf("%d\n", int(answer));
    }
    return 0;
}
