#include "engine/processtree.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <algorithm>
#include <csignal>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

struct ProcessTree::Handles
{
    pid_t group = 0; ///< number of the process group; 0 until the process has been started
};

namespace {

/// Whether a process of that number works in `group`. An ended one stays in its group until its
/// parent has asked for its exit code, which the parent of an orphan may never do.
bool worksIn(pid_t group, const QString &process)
{
    QFile file(u"/proc/%1/stat"_s.arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    // "number (name) state parent group …", and the name may have any characters.
    const QByteArray text = file.readAll();
    const QList<QByteArray> facts = text.sliced(text.lastIndexOf(')') + 1).simplified().split(' ');
    return facts.size() > 2 && facts[0] != "Z" && facts[0] != "X"
        && facts[2] == QByteArray::number(group);
}

} // namespace

ProcessTree::ProcessTree(QProcess &process)
    : m_process(process), m_handles(std::make_unique<Handles>())
{
    // A process group of its own can be killed with all that it starts. The session that comes with
    // it keeps SIGHUP away, which a stopped group gets when it loses its parent.
    process.setChildProcessModifier([] { ::setsid(); });
}

ProcessTree::~ProcessTree() = default;

void ProcessTree::attach()
{
    m_handles->group = pid_t(m_process.processId());
}

bool ProcessTree::isAlive() const
{
    const pid_t group = m_handles->group;
    if (group <= 0 || ::kill(-group, 0) != 0)
        return false;
    const QStringList processes = QDir(u"/proc"_s).entryList({ u"[1-9]*"_s }, QDir::Dirs);
    return std::any_of(processes.begin(), processes.end(),
                       [group](const QString &process) { return worksIn(group, process); });
}

void ProcessTree::kill()
{
    // Until it has a group of its own, it has not started another process.
    m_process.kill();
    // Only if the group still exists: another one may have its number by now.
    if (isAlive())
        ::kill(-m_handles->group, SIGKILL);
}
