#include "engine/exitcode.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>

namespace {

struct ExitCode
{
    int code;
    const char *message;
};

constexpr ExitCode kMessages[] = {
    { 1, QT_TRANSLATE_NOOP("InstallerEngine", "Setup could not start.") },
    { 2, QT_TRANSLATE_NOOP("InstallerEngine", "Installation was cancelled.") },
    { 3, QT_TRANSLATE_NOOP("InstallerEngine", "Setup failed while preparing to install.") },
    { 4, QT_TRANSLATE_NOOP("InstallerEngine", "A fatal error occurred during installation.") },
    { 5, QT_TRANSLATE_NOOP("InstallerEngine", "Installation was cancelled during setup.") },
    { 6, QT_TRANSLATE_NOOP("InstallerEngine", "Setup was stopped by a debugger.") },
    { 7, QT_TRANSLATE_NOOP("InstallerEngine", "Setup cannot install on this system.") },
    { 8, QT_TRANSLATE_NOOP("InstallerEngine", "A restart is required before setup can continue.") },
};

} // namespace

QString exitCodeMessage(int exitCode)
{
    const auto *found = std::ranges::find(kMessages, exitCode, &ExitCode::code);
    if (found == std::end(kMessages))
        return QCoreApplication::translate("InstallerEngine", "Setup exited with code %1.")
            .arg(exitCode);
    return QCoreApplication::translate("InstallerEngine", found->message);
}
