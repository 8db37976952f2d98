#include "engine/processtree.h"

#include <QProcess>

// No engine here is in two parts.
struct ProcessTree::Job
{};

ProcessTree::ProcessTree(QProcess &process) : m_process(process) {}
ProcessTree::~ProcessTree() = default;

void ProcessTree::kill()
{
    m_process.kill();
}
