#include "engine/process.h"

#include <windows.h>

#include <psapi.h>

qint64 peakMemory()
{
    PROCESS_MEMORY_COUNTERS counters = {};
    if (!GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters))
        return -1;
    return qint64(counters.PeakWorkingSetSize);
}

qint64 bytesRead()
{
    IO_COUNTERS counters = {};
    // Wine answers with zeros, although even to load this program takes reading.
    if (!GetProcessIoCounters(GetCurrentProcess(), &counters) || counters.ReadTransferCount == 0)
        return -1;
    return qint64(counters.ReadTransferCount);
}

bool processExists(qint64 processId)
{
    // An ended one is there as long as another process has it open.
    const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, DWORD(processId));
    const bool isRunning = process && WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
    CloseHandle(process);
    return isRunning;
}

bool isRunning(qint64 processId)
{
    return processExists(processId);
}

void endProcess(qint64 processId)
{
    const HANDLE process = OpenProcess(PROCESS_TERMINATE, FALSE, DWORD(processId));
    TerminateProcess(process, 1);
    CloseHandle(process);
}

bool makeFifo(const QString &)
{
    return false; // pipes have names here, but those are no names of files
}

LateKill::LateKill(std::chrono::milliseconds) {}
LateKill::~LateKill() = default;

HeldFile::HeldFile(const QString &path)
    : m_handle(CreateFileW(reinterpret_cast<const wchar_t *>(path.utf16()), GENERIC_READ,
                           FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr))
{
    if (m_handle == INVALID_HANDLE_VALUE)
        qFatal("Cannot hold a file");
}

HeldFile::~HeldFile()
{
    CloseHandle(m_handle);
}
