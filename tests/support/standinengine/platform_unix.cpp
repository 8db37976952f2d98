#include "platform.h"

#include "files.h"
#include "product.h"
#include "text.h"

#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace fs = std::filesystem;

namespace standin::platform {

namespace {

constexpr std::string_view kApplicationScript = R"sh(#!/bin/sh
# Stands in for the installed application: notes how and where it was started, then ends.
if [ -n "$VARNEL_LAUNCH_RECORD" ]; then
    printf '%s\t%s\n' "$0" "$(pwd -P)" >> "$VARNEL_LAUNCH_RECORD"
fi
)sh";

constexpr std::pair<std::string_view, int> kSignals[] = {
    { "ABRT", SIGABRT }, { "BUS", SIGBUS },   { "FPE", SIGFPE },   { "HUP", SIGHUP },
    { "ILL", SIGILL },   { "INT", SIGINT },   { "KILL", SIGKILL }, { "QUIT", SIGQUIT },
    { "SEGV", SIGSEGV }, { "TERM", SIGTERM }, { "TRAP", SIGTRAP },
};

/// 0 for a signal that is unknown or does not end a process.
int signalNumber(std::string_view signal)
{
    int number = 0;
    const auto [end, error] = std::from_chars(signal.data(), signal.data() + signal.size(), number);
    if (error != std::errc() || end != signal.data() + signal.size())
        number = 0;
    if (lower(signal.substr(0, 3)) == "sig")
        signal.remove_prefix(3);
    for (const auto &[name, value] : kSignals) {
        if (number == value || sameIgnoringCase(signal, name))
            return value;
    }
    return 0;
}

/// The value of an Exec key: quoted for the shell-like rules of the entry, then for its text rules.
std::string execValue(const fs::path &target)
{
    std::string quoted;
    for (const char c : toUtf8(target)) {
        if (std::string_view("\"`$\\").find(c) != std::string_view::npos)
            quoted += '\\';
        quoted += c;
    }
    return '"' + replaced(replaced(quoted, "\\", "\\\\"), "%", "%%") + '"';
}

} // namespace

std::vector<std::string> commandLine(int argc, char **argv)
{
    return std::vector<std::string>(argv, argv + argc);
}

std::string environment(const char *name)
{
    const char *value = std::getenv(name);
    return value ? value : "";
}

fs::path ownExecutable(const std::string &programPath)
{
    std::error_code error;
    const fs::path path = fs::read_symlink("/proc/self/exe", error);
    return error ? fs::absolute(toPath(programPath)) : path;
}

fs::path defaultInstallFolder()
{
    const std::string home = environment("HOME");
    return home.empty() ? fs::path() : toPath(home) / product::kName;
}

Shortcut desktopShortcut(const fs::path &target)
{
    fs::path desktop = toPath(environment("XDG_DESKTOP_DIR"));
    if (desktop.empty()) {
        const std::string home = environment("HOME");
        if (home.empty())
            throw FileError("Setup was unable to find the desktop folder.");
        desktop = toPath(home) / "Desktop";
    }
    const std::string name(product::kName);
    return { .file = desktop / (name + ".desktop"),
             .content = "[Desktop Entry]\nType=Application\nVersion=1.0\nName=" + name
                 + "\nExec=" + execValue(target) + "\nPath="
                 + replaced(toUtf8(target.parent_path()), "\\", "\\\\") + "\nTerminal=false\n" };
}

bool copyOver(const fs::path &from, const fs::path &to, std::error_code &error)
{
    return fs::copy_file(from, to, fs::copy_options::overwrite_existing, error);
}

void writeApplication(const fs::path &file)
{
    writeFile(file, kApplicationScript);
    makeExecutable(file);
}

void makeExecutable(const fs::path &file)
{
    using fs::perms;
    std::error_code error;
    fs::permissions(file, perms::owner_exec | perms::group_exec | perms::others_exec,
                    fs::perm_options::add, error);
}

bool removeOwnExecutable(const fs::path &file)
{
    std::error_code error;
    return fs::remove(file, error);
}

bool makeFifo(const fs::path &file)
{
    return ::mkfifo(file.c_str(), 0600) == 0;
}

void ignoreTermination()
{
    for (const int number : { SIGTERM, SIGINT, SIGHUP })
        std::signal(number, SIG_IGN);
}

void ignoreBrokenPipes()
{
    std::signal(SIGPIPE, SIG_IGN);
}

bool isSignal(const std::string &signal)
{
    return signalNumber(signal) != 0;
}

void crash(const std::string &signal)
{
    const rlimit noCore = { 0, 0 };
    ::setrlimit(RLIMIT_CORE, &noCore);
    // A sanitizer's own handler, or one that we ignore, must not catch it.
    const int number = signalNumber(signal);
    std::signal(number, SIG_DFL);
    std::raise(number);
    std::abort();
}

void pause()
{
    std::raise(SIGSTOP);
}

long long splitOff(std::string_view)
{
    const pid_t first = ::getpid();
    const pid_t second = ::fork();
    if (second != 0)
        return second;
    // Its orphans get another parent.
    while (::getppid() == first)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return 0;
}

} // namespace standin::platform
