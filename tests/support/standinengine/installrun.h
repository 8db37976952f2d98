#pragma once

#include "payload.h"
#include "session.h"
#include "uninstalllist.h"

#include <filesystem>
#include <string_view>
#include <vector>

namespace standin {

/// Installs or updates the sample application: the folder, its files, the shortcut, an uninstaller,
/// the entry in the registry. What a failed run has made stays, like after a pulled plug.
class InstallRun
{
public:
    InstallRun(Session &session, std::filesystem::path ownExecutable);

    /// The exit code. Throws EndOfRun when the scenario ends the run.
    int run();

private:
    [[nodiscard]] std::filesystem::path chosenFolder() const;
    void prepare();
    void install();
    void createFolder(const std::filesystem::path &folder);
    void copyFiles(const std::vector<PayloadFile> &payload);
    void copyFile(const PayloadFile &file, const std::filesystem::path &target);
    void createShortcut();
    void leaveUninstaller();

    Session &m_session;
    EngineLog &m_log;
    std::filesystem::path m_ownExecutable;
    UninstallList m_made;
};

} // namespace standin
