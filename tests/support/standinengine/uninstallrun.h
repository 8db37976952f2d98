#pragma once

#include "session.h"
#include "uninstalllist.h"

#include <filesystem>

namespace standin {

/// Removes what the list beside the uninstaller names, and in the end the uninstaller. A file that
/// cannot be removed stays and the run goes on; so do folders that hold somebody else's files.
class UninstallRun
{
public:
    UninstallRun(Session &session, std::filesystem::path ownExecutable);

    /// The exit code. Throws EndOfRun when the scenario ends the run.
    int run();

private:
    void removeFiles(const UninstallList &list);
    void removeShortcuts(const UninstallList &list);
    void removeRegistration(const UninstallList &list);
    void removeUninstaller();
    void removeEmptyFolders(const UninstallList &list);
    void removeFile(const std::filesystem::path &file);

    Session &m_session;
    EngineLog &m_log;
    std::filesystem::path m_ownExecutable;
    std::filesystem::path m_listFile;
};

} // namespace standin
