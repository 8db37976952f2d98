#include "engine/installerengine.h"

#include "engine/argumenttext.h"
#include "engine/enginearguments.h"
#include "engine/exitcode.h"
#include "engine/logsummary.h"
#include "engine/processtree.h"
#include "engine/statusfile.h"
#include "files/installpath.h"
#include "files/regularfile.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>
#include <QThread>
#include <QUuid>

#include <chrono>
#include <utility>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kPollInterval = 50ms;
constexpr auto kKillTimeout = 2000ms;
constexpr auto kLookInterval = 10ms;

/// After its first process has ended well, a run may have so long to finish. An uninstaller needs
/// some of it to remove its own executable. With the time for a kill it is what closing may take.
constexpr auto kLastPartTimeout = 2500ms;

/// Progress steps up to this size are not worth a repaint.
constexpr double kSmallestStep = 0.0001;

/// A status file holds three short lines; one that is longer is not read to its end.
constexpr qint64 kStatusFileLimit = 64 * 1024;

void waitForEnd(const ProcessTree &tree, const QDeadlineTimer &patience)
{
    while (tree.isAlive() && !patience.hasExpired())
        QThread::msleep(kLookInterval.count());
}

/// A process object waits for its process when it goes, and may do so for half a minute.
void discard(QProcess *process)
{
    if (process->state() == QProcess::NotRunning)
        return process->deleteLater();
    process->setParent(nullptr);
    QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
}

/// Windows removes no file that somebody holds, be it for the moment of a look.
void removeFile(const QString &path, const QDeadlineTimer &patience)
{
    while (!QFile::remove(path) && isRegularFile(path) && !patience.hasExpired())
        QThread::msleep(kLookInterval.count());
}

/// Makes a file at `path` of what `log` holds now, although something the engine has left behind
/// may still be writing to it. Whole or not at all, and never over a file that is there.
void copyTo(const QString &path, QFile &log)
{
    QTemporaryFile copy(path + ".XXXXXX"_L1);
    if (!copy.open())
        return;
    QByteArray block(64 * 1024, Qt::Uninitialized);
    for (qint64 left = log.size(); left > 0;) {
        const qint64 size = log.read(block.data(), qMin(left, block.size()));
        if (size <= 0 || copy.write(block.constData(), size) != size)
            return;
        left -= size;
    }
    copy.setAutoRemove(!copy.flush() || !copy.rename(path));
}

} // namespace

InstallerEngine::InstallerEngine(QObject *parent) : QObject(parent)
{
    m_pollTimer.setInterval(kPollInterval);
    connect(&m_pollTimer, &QTimer::timeout, this, &InstallerEngine::poll);
    connect(&m_pollTimer, &QTimer::timeout, this, &InstallerEngine::succeedWhenAlone);
}

InstallerEngine::~InstallerEngine()
{
    stop();
}

void InstallerEngine::startInstall(const QString &folder, const QStringList &tasks)
{
    if (m_setupExecutable.isEmpty()) {
        Q_EMIT finished(false, tr("No setup engine was supplied."));
        return;
    }
    const QString target = installFolder(folder);
    if (target.contains(u'"')) {
        // Windows knows no such names. Elsewhere the engine would take another folder for the one
        // meant.
        Q_EMIT finished(false,
                        tr("Setup cannot install into a folder whose name has a double quote."));
        return;
    }
    beginRun(u"varnel_setup_%1.ini"_s);
    m_logFilePath = m_statusFilePath + ".log"_L1;
    QFile::remove(m_logFilePath);
    launch(m_setupExecutable, installArguments(target, tasks, m_statusFilePath, m_logFilePath));
}

void InstallerEngine::startUninstall(const QString &uninstallerPath)
{
    if (!QFileInfo(uninstallerPath).isFile()) {
        Q_EMIT finished(false, tr("The uninstaller could not be found."));
        return;
    }
    beginRun(u"varnel_uninst_%1.ini"_s);
    launch(uninstallerPath, uninstallArguments(m_statusFilePath));
}

void InstallerEngine::stop()
{
    ++m_stopCount;
    m_pollTimer.stop();
    QDeadlineTimer patience; // none, unless somebody may have a hold on the files
    if (QProcess *process = std::exchange(m_process, nullptr)) {
        process->disconnect(this);
        if (process->state() != QProcess::NotRunning) {
            patience.setRemainingTime(kKillTimeout);
            m_processTree->kill();
            process->waitForFinished(int(patience.remainingTime()));
            waitForEnd(*m_processTree, patience);
        } else {
            // A removal that is all but done must not be left half done.
            waitForEnd(*m_processTree, m_lastPartPatience);
            if (m_processTree->isAlive())
                patience.setRemainingTime(kKillTimeout);
        }
        m_processTree.reset();
        discard(process);
    }
    for (QString *path : { &m_statusFilePath, &m_logFilePath }) {
        if (!path->isEmpty())
            removeFile(*path, patience);
        path->clear();
    }
    m_logTail = {};
}

void InstallerEngine::beginRun(const QString &statusFileName)
{
    stop();
    const QString runId = QUuid::createUuid().toString(QUuid::Id128);
    m_statusFilePath = QDir::temp().absoluteFilePath(statusFileName.arg(runId));
    QFile::remove(m_statusFilePath);
}

void InstallerEngine::launch(const QString &program, const QString &arguments)
{
    m_hasEnded = false;
    m_lastFraction = 0.0;
    m_currentFile.clear();
    m_status.clear();
    m_logTail = LogTail(m_logFilePath);
    m_lastPartPatience = {};

    m_process = new QProcess(this);
    // Absolute, or a bare name would be looked for in the system's own order of folders.
    m_process->setProgram(QFileInfo(program).absoluteFilePath());
    setArgumentText(*m_process, arguments);
    // Nobody reads what the engine prints. Through pipes it would pile up in our memory.
    m_process->setStandardOutputFile(QProcess::nullDevice());
    m_process->setStandardErrorFile(QProcess::nullDevice());
    connect(m_process, &QProcess::errorOccurred, this, &InstallerEngine::onProcessError);
    connect(m_process, &QProcess::finished, this, &InstallerEngine::onProcessFinished);
    m_processTree = std::make_unique<ProcessTree>(*m_process);
    m_process->start();

    // Where a failed start is reported inside start(), the run is over by now.
    if (m_hasEnded)
        return;
    m_processTree->takeRoot();
    m_pollTimer.start();
}

void InstallerEngine::poll()
{
    if (m_statusFilePath.isEmpty())
        return;
    QFile file(m_statusFilePath);
    if (!openRegularFile(file))
        return;
    const StatusFile report = parseStatusFile(file.read(kStatusFileLimit));
    file.close();

    // Any of these signals may be answered by a stop, after which the run says no more.
    const int stopCount = m_stopCount;
    if (report.fraction && *report.fraction > m_lastFraction + kSmallestStep) {
        m_lastFraction = *report.fraction;
        Q_EMIT progress(m_lastFraction);
    }
    if (stopCount == m_stopCount)
        setCurrentFile(report.file);
    if (stopCount == m_stopCount && !report.status.isEmpty() && report.status != m_status) {
        m_status = report.status;
        Q_EMIT statusChanged(m_status);
    }
    // After the status file: of two names for the same moment the log's is the one that stays.
    if (stopCount == m_stopCount)
        setCurrentFile(m_logTail.readNewestFile());
}

void InstallerEngine::setCurrentFile(const QString &path)
{
    if (path.isEmpty() || path == m_currentFile)
        return;
    m_currentFile = path;
    Q_EMIT currentFile(m_currentFile);
}

void InstallerEngine::onProcessError()
{
    if (std::exchange(m_hasEnded, true))
        return;
    m_pollTimer.stop();
    endProcesses();
    Q_EMIT finished(false, m_process ? m_process->errorString() : tr("Setup failed to start."));
}

void InstallerEngine::onProcessFinished(int exitCode, QProcess::ExitStatus exitStatus)
{
    if (!m_hasEnded && exitStatus == QProcess::NormalExit && exitCode == 0) {
        m_lastPartPatience.setRemainingTime(kLastPartTimeout);
        return succeedWhenAlone();
    }
    const int stopCount = m_stopCount;
    poll();
    if (stopCount != m_stopCount)
        return; // somebody heard the last words and stopped this run, or began another
    m_pollTimer.stop();
    if (std::exchange(m_hasEnded, true))
        return;
    endProcesses();
    QString message = exitCodeMessage(exitCode);
    if (const QString detail = keepAndSummarizeLog(); !detail.isEmpty())
        message += "  "_L1 + detail;
    Q_EMIT finished(false, message);
}

void InstallerEngine::succeedWhenAlone()
{
    // Only then has the process ended well and nobody has been told so yet.
    if (m_hasEnded || !m_process || m_process->state() != QProcess::NotRunning)
        return;
    if (m_processTree->isAlive() && !m_lastPartPatience.hasExpired())
        return; // the poll timer asks again
    const int stopCount = m_stopCount;
    poll();
    if (stopCount != m_stopCount)
        return;
    m_pollTimer.stop();
    m_hasEnded = true;
    Q_EMIT progress(1.0);
    if (stopCount == m_stopCount)
        Q_EMIT finished(true, QString());
}

void InstallerEngine::endProcesses()
{
    m_processTree->kill();
    waitForEnd(*m_processTree, QDeadlineTimer(kKillTimeout));
}

QString InstallerEngine::keepAndSummarizeLog()
{
    if (m_logFilePath.isEmpty() || !isRegularFile(m_logFilePath))
        return {};
    m_lastLogPath = QDir::temp().absoluteFilePath(u"varnel_setup_last.log"_s);
    QFile::remove(m_lastLogPath);

    QString reason;
    QFile log(m_logFilePath);
    if (openRegularFile(log)) {
        copyTo(m_lastLogPath, log);
        if (log.seek(0))
            reason = failureReason(log);
    }
    // Assistive technology takes a NUL for the end of the whole sentence.
    reason.remove(QChar::Null);
    const QString keptLog = QDir::toNativeSeparators(m_lastLogPath);
    return reason.isEmpty() ? u"Log: %1"_s.arg(keptLog) : u"%1  (log: %2)"_s.arg(reason, keptLog);
}
