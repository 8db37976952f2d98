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
    const HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, DWORD(processId));
    if (!process)
        return false;
    CloseHandle(process);
    return true;
}

bool makeFifo(const QString &)
{
    return false; // pipes have names here, but those are no names of files
}

bool NoMoreFiles::isPossible()
{
    return false;
}

NoMoreFiles::NoMoreFiles() = default;
NoMoreFiles::~NoMoreFiles() = default;
