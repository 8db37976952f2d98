#include "engine/processtree.h"

#include <QProcess>

#include <utility>

#include <qt_windows.h>

struct ProcessTree::Handles
{
    HANDLE job = nullptr;
    const PROCESS_INFORMATION *suspended = nullptr; ///< the process until attach()
};

ProcessTree::ProcessTree(QProcess &process)
    : m_process(process), m_handles(std::make_unique<Handles>())
{
    // Suspended until it is in the job, so that everything it starts is in the job too.
    process.setCreateProcessArgumentsModifier(
        [handles = m_handles.get()](QProcess::CreateProcessArguments *arguments) {
            arguments->flags |= CREATE_SUSPENDED;
            handles->suspended = arguments->processInformation;
        });
}

ProcessTree::~ProcessTree()
{
    // The job has no limits, so processes that still run go on.
    if (m_handles->job)
        CloseHandle(m_handles->job);
}

void ProcessTree::attach()
{
    const auto *process = std::exchange(m_handles->suspended, nullptr);
    if (!process)
        return;
    // Creating a job may fail, as inside some other jobs. The run then goes on without one, only
    // what it starts cannot be killed.
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
