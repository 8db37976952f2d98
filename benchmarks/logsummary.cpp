// How long it takes to find out from a large log why a run failed, beside what grep takes to find
// the same words in the same file.
//
//   bench_logsummary [<megabytes>]

#include "engine/logsummary.h"
#include "enginelog.h"
#include "timing.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kRuns = 7;
constexpr char kWords[] = "suppressed message box|exception|error|failed";

void compare(const char *what, const QString &path)
{
    const double megabytes = double(QFile(path).size()) / double(kMegabyte);
    const double ours = medianSeconds(kRuns, [&path] {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)
            || failureReason(file).isEmpty())
            qFatal("No reason found");
    });
    const double grep = medianSeconds(kRuns, [&path] {
        QProcess process;
        process.start(u"grep"_s, { u"-ciE"_s, QString::fromLatin1(kWords), path });
        process.waitForFinished(-1);
    });
    std::printf("%-34s %5.0f MB   summary %6.1f ms (%5.0f MB/s)   grep -ciE %6.1f ms   %.1f x\n",
                what, megabytes, ours * 1e3, megabytes / ours, grep * 1e3, grep / ours);
}

} // namespace

int main(int argc, char *argv[])
{
    const qint64 size = (argc > 1 ? QByteArray(argv[1]).toLongLong() : 100) * kMegabyte;
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"engine.log"_s);
    writeLog(path, size, "2026-11-21 10:15:31.000   Log closed.\r\n");
    compare("no word of failure in it", path);
    writeLog(path, size,
             "2026-11-21 10:15:31.000   Defaulting to OK for suppressed message box (OK):"
             "\r\n                          The disk is full.\r\n");
    compare("a message box at its end", path);
}
