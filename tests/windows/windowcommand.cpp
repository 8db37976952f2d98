// Gives a window a command, or prints what Windows knows of it:
//
//   windowcommand <title> [minimize|restore|menu|endsession|signoff|taskbarcreated]
//
// Without a command it prints one "name=value" a line.

#include <windows.h>

#include <cstdio>
#include <string_view>

namespace {

void printFacts(HWND window)
{
    const LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE);
    std::printf("minimize-box=%d\n", (style & WS_MINIMIZEBOX) != 0);
    std::printf("system-menu=%d\n", (style & WS_SYSMENU) != 0);
    std::printf("caption=%d\n", (style & WS_CAPTION) == WS_CAPTION);
    std::printf("iconic=%d\n", IsIconic(window) != 0);
    std::printf("foreground=%d\n", GetForegroundWindow() == window);
}

/// Alt+Space, pressed here since the window manager around Wine keeps these keys to itself.
void pressForMenu()
{
    INPUT inputs[4] {};
    for (INPUT &input : inputs)
        input.type = INPUT_KEYBOARD;
    inputs[0].ki.wVk = inputs[3].ki.wVk = VK_MENU;
    inputs[1].ki.wVk = inputs[2].ki.wVk = VK_SPACE;
    inputs[2].ki.dwFlags = inputs[3].ki.dwFlags = KEYEVENTF_KEYUP;
    SendInput(4, inputs, sizeof(INPUT));
}

/// Windows asks every window whether the session may end, and then tells each whether it does.
/// Here it never does. Prints the answer, 1 if it may, for each of two times.
void endSession(HWND window)
{
    for (int i = 0; i < 2; ++i) {
        const LRESULT answer = SendMessageW(window, WM_QUERYENDSESSION, 0, 0);
        SendMessageW(window, WM_ENDSESSION, FALSE, 0);
        std::printf("%d\n", int(answer));
    }
}

/// As Windows ends a program with the session: it need not run any further after the message.
void signOff(HWND window)
{
    DWORD id = 0;
    GetWindowThreadProcessId(window, &id);
    HANDLE process = OpenProcess(PROCESS_TERMINATE, FALSE, id);
    if (SendMessageW(window, WM_QUERYENDSESSION, 0, 0)) {
        SendMessageW(window, WM_ENDSESSION, TRUE, 0);
        TerminateProcess(process, 0);
    }
    CloseHandle(process);
}

} // namespace

int wmain(int count, wchar_t **arguments)
{
    if (count < 2 || count > 3)
        return 2;
    const HWND window = FindWindowW(nullptr, arguments[1]);
    if (!window)
        return 1;
    const std::wstring_view command = count == 3 ? arguments[2] : L"";
    if (command.empty())
        printFacts(window);
    else if (command == L"minimize")
        PostMessageW(window, WM_SYSCOMMAND, SC_MINIMIZE, 0);
    else if (command == L"restore")
        PostMessageW(window, WM_SYSCOMMAND, SC_RESTORE, 0);
    else if (command == L"menu")
        pressForMenu();
    else if (command == L"endsession")
        endSession(window);
    else if (command == L"signoff")
        signOff(window);
    else if (command
             == L"taskbarcreated") // Sent, not posted: it has been handled when this returns.
        SendMessageW(window, RegisterWindowMessageW(L"TaskbarButtonCreated"), 0, 0);
    else
        return 2;
    return 0;
}
