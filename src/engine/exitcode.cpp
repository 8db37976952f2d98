#include "engine/exitcode.h"

#include <QCoreApplication>

#include <array>

namespace {

constexpr std::array kMessages = {
    QT_TRANSLATE_NOOP("InstallerEngine", "Setup could not start."),
    QT_TRANSLATE_NOOP("InstallerEngine", "Installation was cancelled."),
    QT_TRANSLATE_NOOP("InstallerEngine", "Setup failed while preparing to install."),
    QT_TRANSLATE_NOOP("InstallerEngine", "A fatal error occurred during installation."),
    QT_TRANSLATE_NOOP("InstallerEngine", "Installation was cancelled during setup."),
    QT_TRANSLATE_NOOP("InstallerEngine", "Setup was stopped by a debugger."),
    QT_TRANSLATE_NOOP("InstallerEngine", "Setup cannot install on this system."),
    QT_TRANSLATE_NOOP("InstallerEngine", "A restart is required before setup can continue."),
};
constexpr int kFirstCode = 1;

} // namespace

QString exitCodeMessage(int exitCode)
{
    if (exitCode < kFirstCode || exitCode >= kFirstCode + int(kMessages.size()))
        return QCoreApplication::translate("InstallerEngine", "Setup exited with code %1.")
            .arg(exitCode);
    return QCoreApplication::translate("InstallerEngine", kMessages[size_t(exitCode - kFirstCode)]);
}
