#include "engine/process.h"

#include <QByteArray>
#include <QFile>

#include <atomic>
#include <csignal>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

/// How late kills are, in milliseconds, and a number that tells an earlier delay from a later one.
struct Lateness
{
    int delay = 0;
    int number = 0;
};

std::atomic<Lateness> lateKill;

/// The number behind `key` in a text of the system's, such as "VmHWM:   1234 kB"; -1 without one.
qint64 numberIn(const QString &path, const QByteArray &key)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith(key))
            return line.sliced(key.size()).simplified().split(' ').first().toLongLong();
    }
    return -1;
}

} // namespace

qint64 peakMemory()
{
#ifdef __SANITIZE_ADDRESS__
    return -1;
#else
    const qint64 kilobytes = numberIn(u"/proc/self/status"_s, "VmHWM:");
    return kilobytes < 0 ? -1 : kilobytes * 1024;
#endif
}

qint64 bytesRead()
{
    return numberIn(u"/proc/self/io"_s, "rchar:");
}

bool processExists(qint64 processId)
{
    return ::kill(pid_t(processId), 0) == 0;
}

bool isRunning(qint64 processId)
{
    QFile file(u"/proc/%1/stat"_s.arg(processId));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray text = file.readAll();
    const char state = text.sliced(text.lastIndexOf(')') + 1).trimmed().front();
    return state != 'Z' && state != 'X';
}

void endProcess(qint64 processId)
{
    ::syscall(SYS_kill, pid_t(processId), SIGKILL);
}

bool makeFifo(const QString &path)
{
    return ::mkfifo(QFile::encodeName(path).constData(), 0600) == 0;
}

// The program and its libraries get this one instead of the system's.
extern "C" int kill(pid_t process, int signal) noexcept
{
    const auto send = [=] { return int(::syscall(SYS_kill, process, signal)); };
    const Lateness lateness = lateKill;
    if (lateness.delay == 0 || signal != SIGKILL)
        return send();
    std::thread([=] {
        std::this_thread::sleep_for(std::chrono::milliseconds(lateness.delay));
        if (lateKill.load().number == lateness.number)
            send();
    }).detach();
    return 0;
}

LateKill::LateKill(std::chrono::milliseconds delay)
{
    lateKill = { int(delay.count()), lateKill.load().number + 1 };
}

LateKill::~LateKill()
{
    lateKill = { 0, lateKill.load().number + 1 };
}

HeldFile::HeldFile(const QString &) {}
HeldFile::~HeldFile() = default;
