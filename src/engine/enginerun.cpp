#include "engine/enginerun.h"

#include "engine/argumenttext.h"
#include "engine/exitcode.h"
#include "engine/logsummary.h"
#include "engine/statusfile.h"
#include "files/regularfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>
#include <QThread>

#include <chrono>
#include <utility>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kPollInterval = 50ms;
constexpr auto kKillTimeout = 2000ms;
constexpr auto kLookInterval = 10ms;

/// How long a run may go on after its first process has ended well. An uninstaller needs some of
/// this time to remove its own executable. Closing the window takes at most this and kKillTimeout.
constexpr auto kLastPartTimeout = 2500ms;

/// Progress steps up to this size are not worth a repaint.
constexpr double kSmallestStep = 0.0001;

/// A status file holds three short lines; one that is longer is not read to its end.
constexpr qint64 kStatusFileLimit = 64 * 1024;

void waitForEnd(const ProcessTree &tree, const QDeadlineTimer &deadline)
{
    while (tree.isAlive() && !deadline.hasExpired())
        QThread::msleep(kLookInterval.count());
}

/// Windows does not remove a file that another process has open, even for a moment.
void removeFile(const QString &path, const QDeadlineTimer &deadline)
{
    while (!QFile::remove(path) && isRegularFile(path) && !deadline.hasExpired())
        QThread::msleep(kLookInterval.count());
}

/// Makes a file at `path` of what `log` holds now, although a process that the engine has left
/// running may still be writing to it. Whole or not at all, and never over a file that is there.
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

EngineRun::EngineRun(const QString &statusFilePath, const QString &logFilePath, QObject *parent)
    : QObject(parent),
      m_statusFilePath(statusFilePath),
      m_logFilePath(logFilePath),
      m_process(new QProcess(this)),
      m_processTree(*m_process),
      m_logTail(logFilePath)
{
    QFile::remove(m_statusFilePath);
    if (!m_logFilePath.isEmpty())
        QFile::remove(m_logFilePath);
    m_pollTimer.setInterval(kPollInterval);
    connect(&m_pollTimer, &QTimer::timeout, this, &EngineRun::poll);
    connect(&m_pollTimer, &QTimer::timeout, this, &EngineRun::succeedWhenAlone);
    connect(m_process, &QProcess::errorOccurred, this, &EngineRun::onProcessError);
    connect(m_process, &QProcess::finished, this, &EngineRun::onProcessFinished);
}

void EngineRun::start(const QString &program, const QString &arguments)
{
    // Absolute, or a bare name would be looked for in the system's own order of folders.
    m_process->setProgram(QFileInfo(program).absoluteFilePath());
    setArgumentText(*m_process, arguments);
    // What the engine prints is not read. Through pipes it would pile up in our memory.
    m_process->setStandardOutputFile(QProcess::nullDevice());
    m_process->setStandardErrorFile(QProcess::nullDevice());
    m_process->start();

    // Where a failed start is reported inside start(), the run is over by now.
    if (m_hasEnded)
        return;
    m_processTree.attach();
    m_pollTimer.start();
}

void EngineRun::stop()
{
    blockSignals(true); // also if this is called from one of them, with more to follow
    m_hasEnded = true;
    m_pollTimer.stop();
    QDeadlineTimer deadline; // none, unless a process may have the files open
    if (m_process->state() != QProcess::NotRunning) {
        deadline.setRemainingTime(kKillTimeout);
        m_processTree.kill();
        m_process->waitForFinished(int(deadline.remainingTime()));
        waitForEnd(m_processTree, deadline);
    } else {
        // A removal that is nearly done must not be interrupted.
        waitForEnd(m_processTree, m_lastPartDeadline);
        if (m_processTree.isAlive())
            deadline.setRemainingTime(kKillTimeout);
    }
    if (m_process->state() != QProcess::NotRunning) {
        // Its destructor would wait for it, up to half a minute.
        m_process->setParent(nullptr);
        connect(m_process, &QProcess::finished, m_process, &QObject::deleteLater);
    }
    removeFile(m_statusFilePath, deadline);
    if (!m_logFilePath.isEmpty())
        removeFile(m_logFilePath, deadline);
}

void EngineRun::poll()
{
    QFile file(m_statusFilePath);
    if (!openRegularFile(file))
        return;
    const StatusFile report = parseStatusFile(file.read(kStatusFileLimit));
    file.close();

    if (report.fraction && *report.fraction > m_lastFraction + kSmallestStep) {
        m_lastFraction = *report.fraction;
        Q_EMIT progress(m_lastFraction);
    }
    setCurrentFile(report.file);
    if (!report.status.isEmpty() && report.status != m_status) {
        m_status = report.status;
        Q_EMIT statusChanged(m_status);
    }
    // After the status file: of two names for the same moment the log's is the one that stays.
    setCurrentFile(m_logTail.readNewestFile());
}

void EngineRun::setCurrentFile(const QString &path)
{
    if (path.isEmpty() || path == m_currentFile)
        return;
    m_currentFile = path;
    Q_EMIT currentFile(m_currentFile);
}

void EngineRun::onProcessError()
{
    if (std::exchange(m_hasEnded, true))
        return;
    m_pollTimer.stop();
    endProcesses();
    const QString error = m_process->errorString();
    Q_EMIT finished(false,
                    !error.isEmpty()
                        ? error
                        : QCoreApplication::translate("InstallerEngine", "Setup failed to start."));
}

void EngineRun::onProcessFinished(int exitCode, QProcess::ExitStatus exitStatus)
{
    if (!m_hasEnded && exitStatus == QProcess::NormalExit && exitCode == 0) {
        m_lastPartDeadline.setRemainingTime(kLastPartTimeout);
        return succeedWhenAlone();
    }
    poll(); // which may be answered by stop()
    if (std::exchange(m_hasEnded, true))
        return;
    m_pollTimer.stop();
    endProcesses();
    QString message = exitCodeMessage(exitCode);
    if (const QString detail = keepAndSummarizeLog(); !detail.isEmpty())
        message += "  "_L1 + detail;
    Q_EMIT finished(false, message);
}

void EngineRun::succeedWhenAlone()
{
    // Only between a successful exit and its report.
    if (m_hasEnded || m_process->state() != QProcess::NotRunning)
        return;
    if (m_processTree.isAlive() && !m_lastPartDeadline.hasExpired())
        return; // the poll timer asks again
    poll(); // which may be answered by stop()
    if (std::exchange(m_hasEnded, true))
        return;
    m_pollTimer.stop();
    Q_EMIT progress(1.0);
    Q_EMIT finished(true, QString());
}

void EngineRun::endProcesses()
{
    m_processTree.kill();
    waitForEnd(m_processTree, QDeadlineTimer(kKillTimeout));
}

QString EngineRun::keepAndSummarizeLog()
{
    if (m_logFilePath.isEmpty() || !isRegularFile(m_logFilePath))
        return {};
    const QString keptLog = QDir::temp().absoluteFilePath(u"varnel_setup_last.log"_s);
    QFile::remove(keptLog);
    Q_EMIT logKept(keptLog);

    QString reason;
    QFile log(m_logFilePath);
    if (openRegularFile(log)) {
        copyTo(keptLog, log);
        if (log.seek(0))
            reason = failureReason(log);
    }
    // Assistive technology takes a NUL for the end of the whole sentence.
    reason.remove(QChar::Null);
    const QString shownLog = QDir::toNativeSeparators(keptLog);
    return reason.isEmpty() ? u"Log: %1"_s.arg(shownLog) : u"%1  (log: %2)"_s.arg(reason, shownLog);
}
