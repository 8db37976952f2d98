// What one look at a running engine costs: a whole poll with nothing new, and of one after the log
// has grown the part that depends on how much, the search for the newest name.

#include "engine/installerengine.h"
#include "engine/logtail.h"
#include "enginelog.h"
#include "timing.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kRuns = 9;
constexpr int kPolls = 2000;

/// Two calls for metadata and one small read: the least that a poll can do.
double leastWork(const QByteArray &status, const QByteArray &log)
{
    return medianSecondsPerStep(kRuns, kPolls, [&](int) {
        struct stat info = {};
        char buffer[4096];
        if (stat(status.constData(), &info) != 0 || stat(log.constData(), &info) != 0)
            qFatal("No file");
        const int file = open(status.constData(), O_RDONLY | O_CLOEXEC);
        if (read(file, buffer, sizeof buffer) <= 0)
            qFatal("No status");
        close(file);
    });
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    qputenv("TMPDIR", folder.path().toLocal8Bit());

    // No event loop runs, so this run never ends, and its files are ours to write.
    InstallerEngine engine;
    engine.setSetupExecutable(u"/bin/cat"_s);
    engine.startInstall(folder.path(), {});
    const QString status = engine.statusFilePath();
    const QString log = engine.logFilePath();
    append(status, "[status]\nprogress=42.5\nfile=C:\\some\\file.dll\nstatus=Extracting\n");
    append(log, "2026-11-21 10:15:30.123   Log opened.\r\n");

    const double nothingNew =
        medianSecondsPerStep(kRuns, kPolls, [&engine](int) { engine.poll(); });
    const double least = leastWork(status.toLocal8Bit(), log.toLocal8Bit());
    std::printf(
        "poll, nothing new            %8.2f us   two stat and a read in C %8.2f us   %.1f x\n",
        nothingNew * 1e6, least * 1e6, nothingNew / least);

    // Of the names only the last counts, which is near the end, or nowhere in all of it.
    for (const char *what :
         { "Dest filename: C:\\Program Files\\Varnel\\a.dll", "Installing the file." }) {
        const QByteArray line = QByteArray("2026-11-21 10:15:30.123   ") + what + "\r\n";
        const QByteArray grown = line.repeated(100 * kMegabyte / line.size());
        if (!QFile::resize(log, 0))
            qFatal("Cannot empty the log");
        append(log, grown);
        const double tail = medianSeconds(kRuns, [&log] { (void)LogTail(log).readNewestFile(); });
        const double scan = medianSeconds(kRuns, [&grown] {
            if (std::memchr(grown.constData(), '\1', size_t(grown.size())))
                qFatal("Unexpected byte");
        });
        std::printf("newest name in 100 MB of log %8.2f us   memchr over them         %8.2f us   "
                    "%.3f x   (%s)\n",
                    tail * 1e6, scan * 1e6, tail / scan, what);
    }
}
