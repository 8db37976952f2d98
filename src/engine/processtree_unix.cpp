#include "engine/processtree.h"

#include <QProcess>

// No engine here is in two parts.
struct ProcessTree::Handles
{};

ProcessTree::ProcessTree() = default;
ProcessTree::~ProcessTree() = default;

void ProcessTree::add(const QProcess &) {}

void ProcessTree::kill(QProcess &process)
{
    process.kill();
}
