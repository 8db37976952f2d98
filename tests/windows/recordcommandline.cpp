// Plays a program that is started with arguments: appends its command line, byte for byte as it got
// it (in UTF-8, ended by a line feed), to the file that VARNEL_RECORD names. Ends with the code in
// VARNEL_RECORD_CODE, else with 0.

#include <windows.h>

#include <string>

namespace {

std::wstring variable(const wchar_t *name)
{
    std::wstring value(32768, L'\0');
    value.resize(GetEnvironmentVariableW(name, value.data(), DWORD(value.size())));
    return value;
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
    const HANDLE file = CreateFileW(variable(L"VARNEL_RECORD").c_str(), FILE_APPEND_DATA,
                                    FILE_SHARE_READ, nullptr, OPEN_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return 99;
    const std::string line = utf8(GetCommandLineW()) + '\n';
    DWORD written = 0;
    WriteFile(file, line.data(), DWORD(line.size()), &written, nullptr);
    CloseHandle(file);
    return _wtoi(variable(L"VARNEL_RECORD_CODE").c_str());
}
