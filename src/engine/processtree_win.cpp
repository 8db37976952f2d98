#include "engine/processtree.h"

#include <QProcess>

#include <qt_windows.h>

struct ProcessTree::Handles
{
    HANDLE job = nullptr;
};

ProcessTree::ProcessTree() : m_handles(std::make_unique<Handles>()) {}

ProcessTree::~ProcessTree()
{
    // The job has no limits, so whoever still runs goes on. An uninstaller's last part has to: it
    // outlives the one that was started.
    if (m_handles->job)
        CloseHandle(m_handles->job);
}

void ProcessTree::add(const QProcess &process)
{
    if (m_handles->job)
        return;
    HANDLE handle =
        OpenProcess(PROCESS_SET_QUOTA | PROCESS_TERMINATE, FALSE, DWORD(process.processId()));
    if (!handle)
        return;
    m_handles->job = CreateJobObjectW(nullptr, nullptr);
    if (m_handles->job)
        AssignProcessToJobObject(m_handles->job, handle);
    CloseHandle(handle);
}

void ProcessTree::kill(QProcess &process)
{
    if (m_handles->job)
        TerminateJobObject(m_handles->job, 1);
    process.kill();
}
