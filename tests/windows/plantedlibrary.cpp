// A library that leaves a file beside each program that loads it, with ".loaded" behind its name.

#include <windows.h>

#include <string>

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void *)
{
    if (reason == DLL_PROCESS_ATTACH) {
        std::wstring path(MAX_PATH, L'\0');
        path.resize(GetModuleFileNameW(nullptr, path.data(), DWORD(path.size())));
        path += L".loaded";
        CloseHandle(
            CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    }
    return TRUE;
}
