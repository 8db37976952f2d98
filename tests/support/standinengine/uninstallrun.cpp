#include "uninstallrun.h"

#include "exitcodes.h"
#include "files.h"
#include "platform.h"
#include "product.h"
#include "registration.h"

#include <algorithm>
#include <functional>
#include <system_error>

namespace fs = std::filesystem;

namespace standin {

namespace {

constexpr std::chrono::milliseconds kWholeTime { 4000 };
constexpr std::string_view kRemovingFiles = "Removing application files…";
constexpr std::string_view kRemovingShortcuts = "Removing shortcuts…";
constexpr std::string_view kUnregistering = "Unregistering file types…";
constexpr std::size_t kLaterSteps = 2;

} // namespace

UninstallRun::UninstallRun(Session &session, fs::path ownExecutable)
    : m_session(session),
      m_log(session.log()),
      m_ownExecutable(std::move(ownExecutable)),
      m_listFile(m_ownExecutable.parent_path() / product::kUninstallList)
{}

int UninstallRun::run()
{
    m_session.start();
    const auto list = readUninstallList(m_listFile);
    if (!list) {
        m_log.messageBox("The file \"" + toUtf8(m_listFile)
                         + "\" is not there or cannot be read. Cannot uninstall.");
        return exitcode::kCouldNotStart;
    }
    m_session.beginSteps(list->files.size() + kLaterSteps, kWholeTime, kRemovingFiles);
    removeFiles(*list);
    removeShortcuts(*list);
    m_session.completeStep({}, kRemovingShortcuts);
    m_session.completeStep({}, kUnregistering);
    m_session.reach(Stage::End);
    removeRegistration(*list);
    removeUninstaller();
    removeEmptyFolders(*list);
    m_log.line("Uninstallation process succeeded.");
    return exitcode::kSuccess;
}

void UninstallRun::removeFiles(const UninstallList &list)
{
    for (std::size_t i = 0; i < list.files.size(); ++i) {
        if (i == list.files.size() / 2)
            m_session.reach(Stage::Half);
        removeFile(list.files[i]);
        m_session.completeStep(toUtf8(list.files[i]), kRemovingFiles);
    }
}

void UninstallRun::removeShortcuts(const UninstallList &list)
{
    for (const fs::path &shortcut : list.shortcuts)
        removeFile(shortcut);
}

void UninstallRun::removeRegistration(const UninstallList &list)
{
    try {
        unregisterProduct(list.registryKey);
    } catch (const FileError &error) {
        m_log.messageBox(error.what());
    }
}

void UninstallRun::removeUninstaller()
{
    removeFile(m_listFile);
    m_log.line("Deleting Uninstall data files.");
    if (!platform::removeOwnExecutable(m_ownExecutable))
        m_log.line("The uninstaller stays behind: it is in use.");
}

void UninstallRun::removeEmptyFolders(const UninstallList &list)
{
    auto folders = list.folders;
    folders.push_back(list.folder);
    // A parent always sorts before what is in it.
    std::ranges::sort(folders, std::greater<>());
    for (const fs::path &folder : folders) {
        std::error_code error;
        if (!fs::is_directory(folder, error) || !fs::is_empty(folder, error))
            continue;
        m_log.line("Deleting directory: " + toUtf8(folder));
        fs::remove(folder, error);
    }
}

void UninstallRun::removeFile(const fs::path &file)
{
    std::error_code error;
    const auto status = fs::symlink_status(file, error);
    if (!fs::exists(status) || fs::is_directory(status))
        return;
    m_log.line("Deleting file: " + toUtf8(file));
    if (!fs::remove(file, error))
        m_log.line("Left in place: " + error.message() + ".");
}

} // namespace standin
