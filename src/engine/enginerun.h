#pragma once

#include "engine/logtail.h"
#include "engine/processtree.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QProcess>
#include <QTimer>

/// One run of the setup engine, from its start until stop(): its process with all that this has
/// started, the readers of its status file and log, and what it has reported so far. The files of a
/// run that has ended stay until stop(), so that they can be read when a failure is shown.
///
/// A slot connected to any signal may call stop(). Delete a run with deleteLater(), because one of
/// its signals may be on the stack.
class EngineRun : public QObject
{
    Q_OBJECT

public:
    /// Without a log, as for a removal, `logFilePath` is empty. Files of these names are deleted:
    /// they would be taken for what this run reports.
    EngineRun(const QString &statusFilePath, const QString &logFilePath, QObject *parent);

    [[nodiscard]] QString statusFilePath() const { return m_statusFilePath; }
    [[nodiscard]] QString logFilePath() const { return m_logFilePath; }

    /// Once. A start that fails may have emitted finished() when this returns.
    void start(const QString &program, const QString &arguments);

    /// See InstallerEngine::poll() and InstallerEngine::stop(). A stopped run emits nothing more.
    void poll();
    void stop();

Q_SIGNALS:
    // As those of InstallerEngine.
    void progress(double fraction);
    void currentFile(const QString &path);
    void statusChanged(const QString &status);
    void finished(bool ok, const QString &error);

    /// Before finished(), if the run has failed with a log: where the log's copy is.
    void logKept(const QString &path);

private:
    void onProcessError();
    void onProcessFinished(int exitCode, QProcess::ExitStatus exitStatus);
    /// Reports the success as soon as no process of the run is left, or when that takes too long.
    void succeedWhenAlone();
    void endProcesses();
    void setCurrentFile(const QString &path);
    /// Keeps a copy of the log and returns what it says about the failure; empty without a log.
    [[nodiscard]] QString keepAndSummarizeLog();

    const QString m_statusFilePath;
    const QString m_logFilePath;
    QProcess *const m_process; ///< a child, unless it survives being killed
    ProcessTree m_processTree;
    LogTail m_logTail;
    QTimer m_pollTimer;
    QDeadlineTimer m_lastPartDeadline; ///< for what its process leaves running after a success
    double m_lastFraction = 0.0;
    QString m_currentFile;
    QString m_status;
    bool m_hasEnded = false;
};
