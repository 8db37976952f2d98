#include "system/launch.h"

#include "product/product.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>

#include <windows.h>

#include <shellapi.h>

namespace {

/// Time the application gets to show its first window, in milliseconds.
constexpr DWORD kInputIdleTimeout = 5000;
/// The same for a program that somebody waits for.
constexpr DWORD kFirstWindowTimeout = 30000;

const wchar_t *wide(const QString &text)
{
    return reinterpret_cast<const wchar_t *>(text.utf16());
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
    HANDLE process = OpenProcess(SYNCHRONIZE | PROCESS_QUERY_INFORMATION, FALSE, DWORD(id));
    if (!process)
        return false; // it has ended
    const bool isIdle = WaitForInputIdle(process, kFirstWindowTimeout) == 0;
    const bool isAlive = WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
    CloseHandle(process);
    return isIdle && isAlive;
}
