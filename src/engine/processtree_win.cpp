#include "engine/processtree.h"

#include <QProcess>

#include <utility>

#include <qt_windows.h>

struct ProcessTree::Handles
{
    HANDLE job = nullptr;
    const PROCESS_INFORMATION *asleep = nullptr; ///< what was started and does not run yet
};

ProcessTree::ProcessTree(QProcess &process)
    : m_process(process), m_handles(std::make_unique<Handles>())
{
    // Not before it is in the job does the process run: it might start another sooner.
    process.setCreateProcessArgumentsModifier(
        [handles = m_handles.get()](QProcess::CreateProcessArguments *arguments) {
            arguments->flags |= CREATE_SUSPENDED;
            handles->asleep = arguments->processInformation;
        });
}

ProcessTree::~ProcessTree()
{
    // The job has no limits, so whoever still runs goes on.
    if (m_handles->job)
        CloseHandle(m_handles->job);
}

void ProcessTree::takeRoot()
{
    const auto *process = std::exchange(m_handles->asleep, nullptr);
    if (!process)
        return;
    // Where there can be no job, as within some others, the run is worth more than a clean end.
    m_handles->job = CreateJobObjectW(nullptr, nullptr);
    if (m_handles->job)
        AssignProcessToJobObject(m_handles->job, process->hProcess);
    ResumeThread(process->hThread);
}

bool ProcessTree::isAlive() const
{
    JOBOBJECT_BASIC_ACCOUNTING_INFORMATION facts = {};
    return m_handles->job
        && QueryInformationJobObject(m_handles->job, JobObjectBasicAccountingInformation, &facts,
                                     sizeof facts, nullptr)
        && facts.ActiveProcesses > 0;
}

void ProcessTree::kill()
{
    if (m_handles->job)
        TerminateJobObject(m_handles->job, 1);
    m_process.kill();
}
