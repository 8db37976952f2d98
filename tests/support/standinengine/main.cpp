#include "files.h"
#include "platform.h"
#include "runs.h"

#include "product/product.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>
#include <thread>

using namespace Qt::Literals::StringLiterals;

namespace {

/// No setup ends with this code: the scenario could not be read.
constexpr int kBadScenario = 64;

/// What a copy of this program does that stands for the installed application, as on Windows.
int recordLaunch()
{
    QStringList parts = QCoreApplication::arguments();
    parts.insert(1, QDir::toNativeSeparators(QDir::currentPath()));
    const QString file = qEnvironmentVariable("VARNEL_LAUNCH_RECORD");
    if (!file.isEmpty())
        appendLine(file, parts.join(u'\t').toUtf8());
    return 0;
}

void record(const QStringList &texts)
{
    const QString file = qEnvironmentVariable("VARNEL_ENGINE_RECORD");
    if (!file.isEmpty())
        appendLine(file,
                   QJsonDocument(QJsonArray::fromStringList(texts)).toJson(QJsonDocument::Compact));
}

/// Reports as a setup does that works in a process of its own: it keeps the log open and rewrites
/// the status file. What is not there it does not make.
int runSecondProcess(const Options &options, const Scenario &scenario)
{
    constexpr auto kExisting =
        QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered;
    const QByteArray report = "status=Second process\n";
    const QString statusFile = options.values[u"statusfile"_s];
    QFile log(options.values[u"log"_s]);
    const bool hasLog = QFile::exists(log.fileName()) && log.open(kExisting | QIODevice::Append);
    const QDeadlineTimer end(*scenario.secondProcess);
    for (int i = 0; !end.hasExpired(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        if (hasLog)
            log.write("Dest filename: second process " + QByteArray::number(i) + '\n');
        QFile status(statusFile);
        if (QFile::exists(statusFile) && status.open(kExisting)) {
            status.write(report);
            status.resize(report.size());
        }
    }
    record({ u"second process is done"_s });
    return 0;
}

int runEngine(bool isUninstaller)
{
    const QStringList arguments = QCoreApplication::arguments();
    const Options options(arguments.sliced(1));
    const Scenario scenario = findScenario();
    if (scenario.holdPipes && platform::splitOff("hold-pipes") == 0) {
        std::this_thread::sleep_for(*scenario.holdPipes);
        return 0;
    }
    if (scenario.secondProcess) {
        const qint64 process = platform::splitOff("second-process");
        if (process == 0)
            return runSecondProcess(options, scenario);
        record({ u"second process"_s, QString::number(process) });
    }
    record(arguments);
    if (scenario.ignoreTermination)
        platform::ignoreTermination();
    if (scenario.finishAtOnce)
        return scenario.exitCode.value_or(0);

    Session session(options, scenario);
    int exitCode = 0;
    try {
        exitCode = isUninstaller ? runUninstall(session) : runInstall(session);
    } catch (const EndOfRun &end) {
        exitCode = end.exitCode;
    } catch (const FileError &error) {
        session.log().messageBox(error.text);
        exitCode = error.exitCode;
    }
    session.close();
    return exitCode;
}

} // namespace

int main(int argc, char **argv)
{
    // Where the locale is not UTF-8, Qt would print a warning.
    qputenv("LC_ALL", "C.UTF-8");
    QCoreApplication app(argc, argv);
    platform::ignoreBrokenPipes();
    const QFileInfo program(QCoreApplication::applicationFilePath());
    if (program.fileName().compare(Product::kExecutable, Qt::CaseInsensitive) == 0)
        return recordLaunch();
    try {
        return runEngine(program.fileName().startsWith("unins000"_L1, Qt::CaseInsensitive));
    } catch (const ScenarioError &error) {
        std::fprintf(stderr, "standin-setup: %s\n", qUtf8Printable(error.text));
        return kBadScenario;
    }
}
