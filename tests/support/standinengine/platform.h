#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

/// Everything that differs between systems: platform_unix.cpp and platform_win.cpp define it.
namespace standin::platform {

struct Shortcut
{
    std::filesystem::path file;
    std::string content;
};

/// As UTF-8, program path first.
[[nodiscard]] std::vector<std::string> commandLine(int argc, char **argv);

/// Empty when unset.
[[nodiscard]] std::string environment(const char *name);

[[nodiscard]] std::filesystem::path ownExecutable(const std::string &programPath);

/// Empty when the user has no home.
[[nodiscard]] std::filesystem::path defaultInstallFolder();

/// A shortcut on the user's desktop that starts the target in its folder. Throws FileError when
/// there is no desktop.
[[nodiscard]] Shortcut desktopShortcut(const std::filesystem::path &target);

/// Copies a file over another or to where none is; false if it cannot be.
bool copyOver(const std::filesystem::path &from, const std::filesystem::path &to,
              std::error_code &error);

/// Makes the stand-in for the installed application, which notes each of its launches.
void writeApplication(const std::filesystem::path &file);

void makeExecutable(const std::filesystem::path &file);

/// Also works while the executable runs. False when it stays behind.
bool removeOwnExecutable(const std::filesystem::path &file);

/// False where the system has none.
bool makeFifo(const std::filesystem::path &file);

void ignoreTermination();

/// A closed pipe then shows as a failed write instead of ending the process.
void ignoreBrokenPipes();

/// Whether crash() knows how to die of it: a number, or a name such as SEGV or SIGSEGV.
[[nodiscard]] bool isSignal(const std::string &signal);

/// Ends this process the way the signal does, without a core file.
[[noreturn]] void crash(const std::string &signal);

/// Stops this process until somebody else lets it go on.
void pause();

/// Splits a second process off this one, with the same arguments and standard channels, and returns
/// its number. In the second process it returns 0, as soon as this one has ended. Nothing may have
/// been done before; `duty` tells several such calls apart.
[[nodiscard]] long long splitOff(std::string_view duty);

} // namespace standin::platform
