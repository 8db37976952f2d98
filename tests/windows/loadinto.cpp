// Loads a library into another program as that would load it itself, by its bare name:
//
//   loadinto <title of a window> <library>
//
// Prints whether it is loaded, "here=" into this program and "there=" into the other, and for
// comparison "known=", whether a library that Windows has is loaded there.

#include <windows.h>

#include <cstdio>
#include <string>

namespace {

bool loadThere(HANDLE process, const std::wstring &library)
{
    const SIZE_T size = (library.size() + 1) * sizeof(wchar_t);
    void *const name = VirtualAllocEx(process, nullptr, size, MEM_COMMIT, PAGE_READWRITE);
    if (!name || !WriteProcessMemory(process, name, library.c_str(), size, nullptr))
        return false;
    // Windows has its own libraries at the same address in every process.
    const auto load = reinterpret_cast<LPTHREAD_START_ROUTINE>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleW(L"kernel32"), "LoadLibraryW")));
    HANDLE const thread = CreateRemoteThread(process, nullptr, 0, load, name, 0, nullptr);
    DWORD result = 0;
    WaitForSingleObject(thread, INFINITE);
    GetExitCodeThread(thread, &result);
    return result != 0; // half of the library's address
}

} // namespace

int wmain(int count, wchar_t **arguments)
{
    if (count != 3)
        return 2;
    DWORD id = 0;
    GetWindowThreadProcessId(FindWindowW(nullptr, arguments[1]), &id);
    HANDLE const process = OpenProcess(PROCESS_ALL_ACCESS, FALSE, id);
    if (!process)
        return 1;
    std::printf("here=%d\n", LoadLibraryW(arguments[2]) != nullptr);
    std::printf("known=%d\n", loadThere(process, L"cabinet.dll"));
    std::printf("there=%d\n", loadThere(process, arguments[2]));
    return 0;
}
