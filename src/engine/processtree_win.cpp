#include "engine/processtree.h"

#include <QProcess>

#include <vector>

#include <qt_windows.h>

/// A job and what tells the start of a process to put it there.
struct ProcessTree::Job
{
    HANDLE handle = CreateJobObjectW(nullptr, nullptr);
    std::vector<std::byte> attributes;
    STARTUPINFOEXW startup {};

    Job()
    {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        attributes.resize(size);
        auto *list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(attributes.data());
        if (!handle || !InitializeProcThreadAttributeList(list, 1, 0, &size))
            return;
        startup.lpAttributeList = list;
        UpdateProcThreadAttribute(list, 0, PROC_THREAD_ATTRIBUTE_JOB_LIST, &handle, sizeof(handle),
                                  nullptr, nullptr);
    }

    ~Job()
    {
        if (startup.lpAttributeList)
            DeleteProcThreadAttributeList(startup.lpAttributeList);
        // The job has no limits, so whoever still runs goes on. An uninstaller's last part has to:
        // it outlives the one that was started.
        if (handle)
            CloseHandle(handle);
    }

    Job(const Job &) = delete;
    Job &operator=(const Job &) = delete;
};

ProcessTree::ProcessTree(QProcess &process) : m_process(process), m_job(std::make_unique<Job>())
{
    if (!m_job->startup.lpAttributeList)
        return;
    // With the start and not after it: by then the process may have started another.
    process.setCreateProcessArgumentsModifier(
        [job = m_job.get()](QProcess::CreateProcessArguments *arguments) {
            job->startup.StartupInfo = *arguments->startupInfo;
            job->startup.StartupInfo.cb = sizeof(job->startup);
            arguments->startupInfo = &job->startup.StartupInfo;
            arguments->flags |= EXTENDED_STARTUPINFO_PRESENT;
        });
}

ProcessTree::~ProcessTree() = default;

void ProcessTree::kill()
{
    if (m_job->handle)
        TerminateJobObject(m_job->handle, 1);
    m_process.kill();
}
