#include "platform.h"

#include "files.h"
#include "product.h"
#include "text.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <thread>
#include <utility>

#include <windows.h>

#include <shellapi.h>

namespace fs = std::filesystem;

namespace standin::platform {

namespace {

/// Tells a copy of this program that it is a second process: "<first one's process id> <duty>".
constexpr wchar_t kSecondProcessVariable[] = L"VARNEL_ENGINE_SECOND_PROCESS";

/// A process that dies of an exception ends with the exception's code.
constexpr std::pair<std::string_view, UINT> kSignals[] = {
    { "11", 0xC0000005 },   { "SEGV", 0xC0000005 }, { "ILL", 0xC000001D },
    { "FPE", 0xC000008E },  { "BUS", 0xC0000006 },  { "TRAP", 0x80000003 },
    { "ABRT", 0xC0000409 }, { "KILL", 0xC000013A }, { "TERM", 0xC000013A },
};

UINT exceptionCode(std::string_view signal)
{
    if (lower(signal.substr(0, 3)) == "sig")
        signal.remove_prefix(3);
    for (const auto &[name, code] : kSignals) {
        if (sameIgnoringCase(signal, name))
            return code;
    }
    return 0;
}

std::wstring wideEnvironment(const wchar_t *name)
{
    const wchar_t *value = _wgetenv(name);
    return value ? value : L"";
}

} // namespace

std::vector<std::string> commandLine(int, char **)
{
    int count = 0;
    LPWSTR *arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> result;
    for (int i = 0; i < count; ++i) {
        const std::u8string text = fs::path(arguments[i]).u8string();
        result.emplace_back(text.begin(), text.end());
    }
    LocalFree(arguments);
    return result;
}

std::string environment(const char *name)
{
    const std::u8string text = fs::path(wideEnvironment(fs::path(name).c_str())).u8string();
    return std::string(text.begin(), text.end());
}

fs::path ownExecutable(const std::string &)
{
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

fs::path defaultInstallFolder()
{
    const fs::path base = wideEnvironment(L"LOCALAPPDATA");
    return base.empty() ? fs::path() : base / "Programs" / product::kName;
}

Shortcut desktopShortcut(const fs::path &target)
{
    // The variable that moves the desktop elsewhere does so here too.
    fs::path desktop = wideEnvironment(L"XDG_DESKTOP_DIR");
    if (desktop.empty()) {
        const fs::path profile = wideEnvironment(L"USERPROFILE");
        if (profile.empty())
            throw FileError("Setup was unable to find the desktop folder.");
        desktop = profile / "Desktop";
    }
    return { .file = desktop / (std::string(product::kName) + ".url"),
             .content = "[InternetShortcut]\r\nURL=file:///" + replaced(toUtf8(target), "\\", "/")
                 + "\r\n" };
}

bool copyOver(const fs::path &from, const fs::path &to, std::error_code &error)
{
    // GCC's copy_file() takes any file that is there for the same one.
    const bool isDone = CopyFileW(from.c_str(), to.c_str(), FALSE);
    error.assign(isDone ? 0 : static_cast<int>(GetLastError()), std::system_category());
    return isDone;
}

void writeApplication(const fs::path &file)
{
    // A copy of this program: under that name it notes its launch.
    std::error_code error;
    if (!copyOver(ownExecutable({}), file, error)) {
        throw FileError("Setup was unable to write the file \"" + toUtf8(file)
                        + "\": " + error.message() + ".");
    }
}

void makeExecutable(const fs::path &) {}

bool removeOwnExecutable(const fs::path &file)
{
    if (DeleteFileW(file.c_str()))
        return true;
    // A running program cannot be deleted, but it can be moved out of the folder that is to go.
    const fs::path parked = file.parent_path().parent_path()
        / ("standin-" + std::to_string(GetCurrentProcessId()) + ".exe");
    if (!MoveFileExW(file.c_str(), parked.c_str(), MOVEFILE_REPLACE_EXISTING))
        return false;
    MoveFileExW(parked.c_str(), nullptr, MOVEFILE_DELAY_UNTIL_REBOOT);
    return true;
}

bool makeFifo(const fs::path &)
{
    return false;
}

void ignoreTermination()
{
    SetConsoleCtrlHandler(nullptr, TRUE);
}

void ignoreBrokenPipes() {}

bool isSignal(const std::string &signal)
{
    return exceptionCode(signal) != 0;
}

void crash(const std::string &signal)
{
    TerminateProcess(GetCurrentProcess(), exceptionCode(signal));
    std::abort();
}

void pause()
{
    SuspendThread(GetCurrentThread());
}

long long splitOff(std::string_view duty)
{
    if (const std::wstring order = wideEnvironment(kSecondProcessVariable); !order.empty()) {
        wchar_t *rest = nullptr;
        const DWORD firstId = std::wcstoul(order.c_str(), &rest, 10);
        if (fs::path(rest + 1).string() != duty)
            return -1; // it was split off for something else
        if (const HANDLE first = OpenProcess(SYNCHRONIZE, FALSE, firstId)) {
            WaitForSingleObject(first, INFINITE);
            CloseHandle(first);
        }
        return 0;
    }
    const std::wstring order =
        std::to_wstring(GetCurrentProcessId()) + L' ' + fs::path(duty).wstring();
    std::wstring arguments = GetCommandLineW();
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process = {};
    SetEnvironmentVariableW(kSecondProcessVariable, order.c_str());
    if (CreateProcessW(ownExecutable({}).c_str(), arguments.data(), nullptr, nullptr, TRUE,
                       CREATE_NO_WINDOW, nullptr, nullptr, &startup, &process)) {
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    SetEnvironmentVariableW(kSecondProcessVariable, nullptr);
    return process.dwProcessId;
}

} // namespace standin::platform
