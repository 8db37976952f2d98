#include "system/launch.h"

#include "product/product.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QProcess>

#include <chrono>

#include <windows.h>

#include <shellapi.h>

using namespace std::chrono_literals;

namespace {

/// Time the application gets to show its first window, in milliseconds.
constexpr DWORD kInputIdleTimeout = 5000;
/// The same for startAndAwaitWindow().
constexpr auto kFirstWindowTimeout = 30s;
constexpr DWORD kLookInterval = 20;
constexpr DWORD kKillTimeout = 2000;

const wchar_t *wide(const QString &text)
{
    return reinterpret_cast<const wchar_t *>(text.utf16());
}

/// Whether a window of the process `id` is on screen.
bool hasWindow(DWORD id)
{
    struct Search
    {
        DWORD process;
        bool hasFound;
    } search { id, false };
    const auto look = [](HWND window, LPARAM data) -> BOOL {
        auto *looked = reinterpret_cast<Search *>(data);
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        looked->hasFound = process == looked->process && IsWindowVisible(window);
        return !looked->hasFound;
    };
    EnumWindows(look, reinterpret_cast<LPARAM>(&search));
    return search.hasFound;
}

} // namespace

void launchApplication(const QString &folder)
{
    const QString program = QDir(folder).absoluteFilePath(Product::kExecutable.toString());
    if (!QFileInfo(program).isFile())
        return; // the shell would open a window with the content of a folder

    // The wizard has the foreground now and is about to close. Without this call, the application
    // would open behind other windows.
    AllowSetForegroundWindow(ASFW_ANY);

    const QString nativeProgram = QDir::toNativeSeparators(program);
    const QString nativeFolder = QDir::toNativeSeparators(folder);
    SHELLEXECUTEINFOW info {};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_NOASYNC;
    info.lpVerb = L"open";
    info.lpFile = wide(nativeProgram);
    info.lpDirectory = wide(nativeFolder);
    info.nShow = SW_SHOWNORMAL;
    if (!ShellExecuteExW(&info)) {
        QProcess::startDetached(program, {}, folder);
        return;
    }
    if (info.hProcess) {
        WaitForInputIdle(info.hProcess, kInputIdleTimeout);
        CloseHandle(info.hProcess);
    }
}

bool startAndAwaitWindow(const QString &program, const QStringList &arguments)
{
    qint64 id = 0;
    if (!QProcess::startDetached(program, arguments, QFileInfo(program).path(), &id))
        return false;
    AllowSetForegroundWindow(DWORD(id));
    HANDLE process = OpenProcess(SYNCHRONIZE | PROCESS_TERMINATE, FALSE, DWORD(id));
    if (!process)
        return false; // it has ended
    const QDeadlineTimer deadline(kFirstWindowTimeout);
    bool isAlive = true;
    while (isAlive && !hasWindow(DWORD(id)) && !deadline.hasExpired())
        isAlive = WaitForSingleObject(process, kLookInterval) == WAIT_TIMEOUT;
    const bool isShown = isAlive && hasWindow(DWORD(id));
    if (!isShown) {
        TerminateProcess(process, 1);
        WaitForSingleObject(process, kKillTimeout);
    }
    CloseHandle(process);
    return isShown;
}
