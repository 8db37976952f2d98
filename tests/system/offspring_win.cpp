#include "system/offspring.h"

#include <windows.h>

namespace {

constexpr DWORD kLookAgain = 10; // ms

/// Everything that a member of the job starts is a member too. Lives as long as the process.
HANDLE theJob = nullptr;

} // namespace

bool adoptOffspring()
{
    theJob = CreateJobObjectW(nullptr, nullptr);
    return theJob && AssignProcessToJobObject(theJob, GetCurrentProcess());
}

void awaitOffspring()
{
    JOBOBJECT_BASIC_ACCOUNTING_INFORMATION members = {};
    while (QueryInformationJobObject(theJob, JobObjectBasicAccountingInformation, &members,
                                     sizeof members, nullptr)
           && members.ActiveProcesses > 1)
        Sleep(kLookAgain);
}
