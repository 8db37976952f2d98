#include "engine/processtree.h"

#include <QProcess>

// No engine here is in two parts.
struct ProcessTree::Handles
{};

ProcessTree::ProcessTree(QProcess &process) : m_process(process) {}
ProcessTree::~ProcessTree() = default;

void ProcessTree::takeRoot() {}

void ProcessTree::kill()
{
    m_process.kill();
}
