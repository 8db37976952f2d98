// Ends every program of a name at once, as the task manager does:
//
//   endprogram <name of the executable>
//
// Ends itself with 0 if there was one.

#include <windows.h>

#include <tlhelp32.h>

int wmain(int count, wchar_t **arguments)
{
    if (count != 2)
        return 2;
    // What the task manager leaves as the exit code of the program.
    constexpr UINT kEnded = 1;
    int result = 1;
    const HANDLE list = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W entry {};
    entry.dwSize = sizeof entry;
    for (BOOL found = Process32FirstW(list, &entry); found; found = Process32NextW(list, &entry)) {
        if (lstrcmpiW(entry.szExeFile, arguments[1]) != 0)
            continue;
        if (const HANDLE process = OpenProcess(PROCESS_TERMINATE, FALSE, entry.th32ProcessID)) {
            if (TerminateProcess(process, kEnded))
                result = 0;
            CloseHandle(process);
        }
    }
    CloseHandle(list);
    return result;
}
