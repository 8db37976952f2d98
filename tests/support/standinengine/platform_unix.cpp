#include "platform.h"

#include "files.h"

#include <QFile>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace platform {

namespace {

constexpr char kApplicationScript[] = R"sh(#!/bin/sh
# Stands in for the installed application: notes how and where it was started, then ends.
if [ -n "$VARNEL_LAUNCH_RECORD" ]; then
    printf '%s\t%s\n' "$0" "$(pwd -P)" >> "$VARNEL_LAUNCH_RECORD"
fi
)sh";

constexpr std::pair<QStringView, int> kSignals[] = {
    { u"ABRT", SIGABRT }, { u"BUS", SIGBUS },   { u"FPE", SIGFPE },   { u"HUP", SIGHUP },
    { u"ILL", SIGILL },   { u"INT", SIGINT },   { u"KILL", SIGKILL }, { u"QUIT", SIGQUIT },
    { u"SEGV", SIGSEGV }, { u"TERM", SIGTERM }, { u"TRAP", SIGTRAP },
};

/// 0 for a signal that is unknown or does not end a process.
int signalNumber(QStringView signal)
{
    const int number = signal.toInt();
    if (signal.startsWith(u"SIG", Qt::CaseInsensitive))
        signal = signal.sliced(3);
    for (const auto &[name, value] : kSignals) {
        if (number == value || signal.compare(name, Qt::CaseInsensitive) == 0)
            return value;
    }
    return 0;
}

} // namespace

void writeApplication(const QString &file)
{
    writeFile(file, kApplicationScript);
    makeExecutable(file);
}

void makeFifo(const QString &file)
{
    ::mkfifo(QFile::encodeName(file).constData(), 0600);
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

bool isSignal(const QString &signal)
{
    return signalNumber(signal) != 0;
}

void crash(const QString &signal)
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

qint64 splitOff(const QByteArray &)
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

} // namespace platform
