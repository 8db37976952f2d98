#include "platform.h"

#include "files.h"

#include <QCoreApplication>
#include <QDir>

#include <cstdlib>

#include <windows.h>

namespace platform {

namespace {

/// Tells a copy of this program that it is a second process: "<first one's process id> <duty>".
constexpr char kSecondProcessVariable[] = "VARNEL_ENGINE_SECOND_PROCESS";

/// A process that dies of an exception ends with the exception's code.
constexpr std::pair<QStringView, UINT> kSignals[] = {
    { u"11", 0xC0000005 },   { u"SEGV", 0xC0000005 }, { u"ILL", 0xC000001D },
    { u"FPE", 0xC000008E },  { u"BUS", 0xC0000006 },  { u"TRAP", 0x80000003 },
    { u"ABRT", 0xC0000409 }, { u"KILL", 0xC000013A }, { u"TERM", 0xC000013A },
};

UINT exceptionCode(QStringView signal)
{
    if (signal.startsWith(u"SIG", Qt::CaseInsensitive))
        signal = signal.sliced(3);
    for (const auto &[name, code] : kSignals) {
        if (signal.compare(name, Qt::CaseInsensitive) == 0)
            return code;
    }
    return 0;
}

} // namespace

void writeApplication(const QString &file)
{
    // A copy of this program: under that name it notes its launch.
    copyFile(QCoreApplication::applicationFilePath(), file);
}

void makeFifo(const QString &) {}

void ignoreTermination()
{
    SetConsoleCtrlHandler(nullptr, TRUE);
}

void ignoreBrokenPipes() {}

bool isSignal(const QString &signal)
{
    return exceptionCode(signal) != 0;
}

void crash(const QString &signal)
{
    TerminateProcess(GetCurrentProcess(), exceptionCode(signal));
    std::abort();
}

void pause()
{
    SuspendThread(GetCurrentThread());
}

qint64 splitOff(const QByteArray &duty)
{
    if (const QByteArray order = qgetenv(kSecondProcessVariable); !order.isEmpty()) {
        const qsizetype blank = order.indexOf(' ');
        if (order.sliced(blank + 1) != duty)
            return -1; // it was split off for something else
        if (const HANDLE first = OpenProcess(SYNCHRONIZE, FALSE, order.first(blank).toULong())) {
            WaitForSingleObject(first, INFINITE);
            CloseHandle(first);
        }
        return 0;
    }
    std::wstring arguments = GetCommandLineW();
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process = {};
    const std::wstring program =
        QDir::toNativeSeparators(QCoreApplication::applicationFilePath()).toStdWString();
    qputenv(kSecondProcessVariable, QByteArray::number(qint64(GetCurrentProcessId())) + ' ' + duty);
    if (CreateProcessW(program.c_str(), arguments.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW,
                       nullptr, nullptr, &startup, &process)) {
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    qunsetenv(kSecondProcessVariable);
    return process.dwProcessId;
}

} // namespace platform
