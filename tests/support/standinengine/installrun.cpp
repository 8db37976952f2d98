#include "installrun.h"

#include "exitcodes.h"
#include "files.h"
#include "platform.h"
#include "product.h"
#include "registration.h"

#include <system_error>

namespace fs = std::filesystem;

namespace standin {

namespace {

constexpr std::chrono::milliseconds kWholeTime { 6000 };
constexpr std::string_view kPayloadDate = "2026-10-01 12:00:00.000";
constexpr std::string_view kCopying = "Extracting application files…";

/// Parts of a setup that take their time without writing files of the application.
constexpr std::string_view kLaterSteps[] = {
    "Installing WebView2 Runtime…",
    "Installing WebView2 Runtime…",
    "Registering .sch and .pcb file types…",
    "Registering .sch and .pcb file types…",
    "Creating shortcuts…",
    "Creating shortcuts…",
};

} // namespace

InstallRun::InstallRun(Session &session, fs::path ownExecutable)
    : m_session(session), m_log(session.log()), m_ownExecutable(std::move(ownExecutable))
{}

int InstallRun::run()
{
    m_session.start();
    int codeOfFailure = exitcode::kPreparingFailed;
    try {
        prepare();
        codeOfFailure = exitcode::kCancelledDuringSetup;
        install();
    } catch (const FileError &error) {
        m_log.messageBox(error.what());
        return codeOfFailure;
    }
    m_log.line("Installation process succeeded.");
    m_log.line("Need to restart Windows? No");
    return exitcode::kSuccess;
}

fs::path InstallRun::chosenFolder() const
{
    fs::path folder = toPath(m_session.options().folder);
    if (folder.empty())
        folder = registeredFolder();
    if (folder.empty())
        folder = platform::defaultInstallFolder();
    if (folder.empty())
        throw FileError("Setup was unable to find a folder to install to.");
    folder = fs::absolute(folder).lexically_normal();
    return folder.has_filename() ? folder : folder.parent_path();
}

void InstallRun::prepare()
{
    m_made.folder = chosenFolder();
    m_log.line("Starting the installation process.");
    createFolder(m_made.folder);
}

void InstallRun::install()
{
    const auto fileCount = m_session.scenario().fileCount;
    const auto payload = fileCount ? numberedPayload(*fileCount) : samplePayload();
    m_session.beginSteps(payload.size() + std::size(kLaterSteps), kWholeTime, kCopying);
    copyFiles(payload);
    if (m_session.options().hasTask(product::kDesktopTask))
        createShortcut();
    leaveUninstaller();
    for (const std::string_view status : kLaterSteps)
        m_session.completeStep({}, status);
    m_session.reach(Stage::End);
    registerProduct(m_made.folder);
}

void InstallRun::createFolder(const fs::path &folder)
{
    std::error_code error;
    if (fs::is_directory(folder, error))
        return;
    if (folder.has_relative_path())
        createFolder(folder.parent_path());
    m_log.line("Creating directory: " + toUtf8(folder));
    if (!fs::create_directory(folder, error)) {
        throw FileError("Setup was unable to create the directory \"" + toUtf8(folder)
                        + "\": " + error.message() + ".");
    }
    m_made.folders.push_back(folder);
}

void InstallRun::copyFiles(const std::vector<PayloadFile> &payload)
{
    for (std::size_t i = 0; i < payload.size(); ++i) {
        if (i == payload.size() / 2)
            m_session.reach(Stage::Half);
        const fs::path target = m_made.folder / toPath(payload[i].path);
        createFolder(target.parent_path());
        copyFile(payload[i], target);
        m_session.completeStep(toUtf8(target), kCopying);
    }
}

void InstallRun::copyFile(const PayloadFile &file, const fs::path &target)
{
    m_log.line("-- File entry --");
    m_log.line("Dest filename: " + toUtf8(target));
    m_log.line("Time stamp of our file: " + std::string(kPayloadDate));
    std::error_code error;
    if (fs::exists(target, error))
        m_log.line("Dest file exists.");
    m_log.line("Installing the file.");
    if (file.path == product::kMainExecutable)
        platform::writeApplication(target);
    else
        writeFile(target, contentOf(file));
    m_made.files.push_back(target);
    m_log.line("Successfully installed the file.");
}

void InstallRun::createShortcut()
{
    const auto shortcut = platform::desktopShortcut(m_made.folder / product::kMainExecutable);
    m_log.line("-- Icon entry --");
    m_log.line("Dest filename: " + toUtf8(shortcut.file));
    createFolder(shortcut.file.parent_path());
    m_log.line("Creating the icon.");
    writeFile(shortcut.file, shortcut.content);
    platform::makeExecutable(shortcut.file);
    m_made.shortcuts.push_back(shortcut.file);
    m_log.line("Successfully created the icon.");
}

void InstallRun::leaveUninstaller()
{
    m_log.line("Saving uninstall information.");
    const fs::path program = m_made.folder / product::kUninstaller;
    std::error_code error;
    platform::copyOver(m_ownExecutable, program, error);
    if (error) {
        throw FileError("Setup was unable to write the file \"" + toUtf8(program)
                        + "\": " + error.message() + ".");
    }
    platform::makeExecutable(program);

    const fs::path listFile = m_made.folder / product::kUninstallList;
    m_made.registryKey = product::kRegistryKeys.front();
    if (const auto earlier = readUninstallList(listFile))
        m_made.add(*earlier);
    writeUninstallList(listFile, m_made);
}

} // namespace standin
