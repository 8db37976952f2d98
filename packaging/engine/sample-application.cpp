// Stands for the application in a sample of its files. Started, it says so in started.txt of its
// own folder: one line per start with the working folder, a tab and the command line. Then it stays
// for a moment, as a program does.

#include <windows.h>

#include <string>

namespace {

constexpr DWORD kStay = 2000;

std::wstring ownFolder()
{
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), DWORD(path.size())));
    return path.substr(0, path.rfind(L'\\'));
}

std::wstring workingFolder()
{
    std::wstring path(32768, L'\0');
    path.resize(GetCurrentDirectoryW(DWORD(path.size()), path.data()));
    return path;
}

std::string utf8(const std::wstring &text)
{
    std::string result(text.size() * 3, '\0');
    result.resize(size_t(WideCharToMultiByte(CP_UTF8, 0, text.data(), int(text.size()),
                                             result.data(), int(result.size()), nullptr, nullptr)));
    return result;
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t *, int)
{
    const std::string line = utf8(workingFolder() + L'\t' + GetCommandLineW()) + '\n';
    const HANDLE file = CreateFileW((ownFolder() + L"\\started.txt").c_str(), FILE_APPEND_DATA,
                                    FILE_SHARE_READ, nullptr, OPEN_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return 1;
    DWORD written = 0;
    WriteFile(file, line.data(), DWORD(line.size()), &written, nullptr);
    CloseHandle(file);
    Sleep(kStay);
    return 0;
}
