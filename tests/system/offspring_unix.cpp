#include "system/offspring.h"

#include <QtGlobal>

#include <sys/wait.h>
#ifdef Q_OS_LINUX
#include <sys/prctl.h>
#endif

bool adoptOffspring()
{
#ifdef Q_OS_LINUX
    // What is started detached becomes a child of ours after all.
    return prctl(PR_SET_CHILD_SUBREAPER, 1) == 0;
#else
    return false;
#endif
}

void awaitOffspring()
{
    while (waitpid(-1, nullptr, 0) > 0) {}
}
