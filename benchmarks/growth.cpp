// What following and judging a run costs as the run grows: the time per new byte must not depend on
// what there is already.
//
//   bench_growth [<largest log in megabytes>]

#include "engine/logsummary.h"
#include "engine/logtail.h"
#include "enginelog.h"
#include "timing.h"

#include <QTemporaryDir>

#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kRuns = 5;
constexpr int kLooks = 500;

/// The part of a poll that meets the log.
double secondsToNewestFile(LogTail &tail)
{
    return secondsOf([&tail] {
        if (tail.readNewestFile().isEmpty())
            qFatal("No name");
    });
}

/// A look at the log after it has grown by one file's lines, and the summary of all of it.
void measureLog(const QString &path, qint64 megabytes)
{
    writeLog(path, megabytes * kMegabyte, {});
    LogTail tail(path);
    if (tail.readNewestFile().isEmpty())
        qFatal("No name");
    const QByteArray news = logOfOneFile(1);
    std::vector<double> looks;
    for (int i = 0; i < kLooks; ++i) {
        append(path, news);
        looks.push_back(secondsToNewestFile(tail));
    }
    const double size = double(QFile(path).size());
    const double summary = medianSeconds(kRuns, [&path] {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)
            || failureReason(file).isEmpty())
            qFatal("No reason found");
    });
    std::printf("log of %5lld MB          newest name after %lld bytes more %6.2f us   "
                "summary %7.1f ms, %6.3f ns per byte\n",
                static_cast<long long>(megabytes), static_cast<long long>(news.size()),
                median(looks) * 1e6, summary * 1e3, summary / size * 1e9);
}

/// A look at the log for each file of a payload, all in one run.
void measurePayload(const QString &path, int files)
{
    QFile::remove(path);
    append(path, "2026-11-21 10:15:30.123   Log opened.\r\n");
    LogTail tail(path);
    QFile log(path);
    if (!log.open(QIODevice::Append | QIODevice::Unbuffered))
        qFatal("Cannot write %s", qPrintable(path));
    std::vector<double> looks;
    for (int i = 0; i < files; ++i) {
        log.write(logOfOneFile(i));
        looks.push_back(secondsToNewestFile(tail));
    }
    std::printf("payload of %6d files   newest name after each file     %6.2f us\n", files,
                median(looks) * 1e6);
}

} // namespace

int main(int argc, char *argv[])
{
    const qint64 largest = argc > 1 ? QByteArray(argv[1]).toLongLong() : 1000;
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"engine.log"_s);
    for (qint64 megabytes = 1; megabytes <= largest; megabytes *= 10)
        measureLog(path, megabytes);
    for (int files : { 10, 1000, 100000 })
        measurePayload(path, files);
}
