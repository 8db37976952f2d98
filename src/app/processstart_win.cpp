#include "app/processstart.h"

#include <windows.h>

#include <shellapi.h>

void loadFromSystemFolderOnly()
{
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    SetDllDirectoryW(L""); // not from the current folder either
}

QStringList processArguments(int, const char *const *)
{
    // argv has lost every character that the system's code page lacks.
    int count = 0;
    wchar_t **const words = CommandLineToArgvW(GetCommandLineW(), &count);
    QStringList arguments;
    for (int i = 0; words && i < count; ++i)
        arguments += QString::fromWCharArray(words[i]);
    LocalFree(words);
    return arguments;
}
