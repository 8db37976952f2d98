#include "app/processstart.h"

#include <windows.h>

#include <shellapi.h>

void loadFromSystemFolderOnly()
{
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    SetDllDirectoryW(L""); // not from the current folder either
}

bool isElevated()
{
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token))
        return true;
    TOKEN_ELEVATION elevation {};
    DWORD size = 0;
    const bool isKnown =
        GetTokenInformation(token, TokenElevation, &elevation, sizeof elevation, &size);
    CloseHandle(token);
    return !isKnown || elevation.TokenIsElevated;
}

QStringList processArguments(int, const char *const *)
{
    // What main() gets has lost what the system's code page lacks.
    int count = 0;
    wchar_t **const words = CommandLineToArgvW(GetCommandLineW(), &count);
    QStringList arguments;
    for (int i = 0; words && i < count; ++i)
        arguments += QString::fromWCharArray(words[i]);
    LocalFree(words);
    return arguments;
}
