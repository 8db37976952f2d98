// Keeps a file open, so that nobody can replace or remove it, until it is ended from outside:
//
//   holdfile <file> [alone]
//
// Says "held" as soon as it does. Held "alone", nobody can read it either.

#include <windows.h>

#include <cstdio>

int wmain(int count, wchar_t **arguments)
{
    if (count < 2 || count > 3)
        return 2;
    const HANDLE file = CreateFileW(arguments[1], GENERIC_READ, count == 3 ? 0 : FILE_SHARE_READ,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return 1;
    std::puts("held");
    std::fflush(stdout);
    Sleep(INFINITE);
    return 0;
}
