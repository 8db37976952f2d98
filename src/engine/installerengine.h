#pragma once

#include "engine/logtail.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QProcess>
#include <QStringList>
#include <QTimer>

#include <memory>

class ProcessTree;

/// Runs the silent setup engine as a child process and tells how far it is and how it ended.
///
/// The engine program reports through two temporary files, a small status file that it keeps
/// rewriting and a log that only grows; a timer polls both. The files of an ended run stay until
/// the next run starts or this object goes: whoever shows a failure may still want to read them.
class InstallerEngine : public QObject
{
    Q_OBJECT

public:
    explicit InstallerEngine(QObject *parent = nullptr);
    ~InstallerEngine() override;

    /// Program that installs and updates; empty if none was given. A relative path counts from the
    /// current folder, also a bare name: it is never looked for elsewhere.
    [[nodiscard]] QString setupExecutable() const { return m_setupExecutable; }
    void setSetupExecutable(const QString &path) { m_setupExecutable = path; }

    /// Starts an installation or an update into `folder` (a bare drive gets the product's folder
    /// appended). Without a setup executable, or if the folder's name cannot be put on a command
    /// line, the run ends at once and a previous one stays as it is.
    void startInstall(const QString &folder, const QStringList &tasks);

    /// Starts a removal by the uninstaller at `uninstallerPath`. If there is no such file the run
    /// ends at once and a previous one stays as it is.
    void startUninstall(const QString &uninstallerPath);

    /// Ends a run without a word: kills its processes, waits up to two seconds for them and for
    /// their hold on the run's temporary files, and deletes these. What a process that has ended
    /// well left to finish is not killed, but waited for, up to two and a half seconds more. The
    /// kept copy of a failed run's log stays.
    void stop();

    /// Absolute path of the run's status file; empty if there is no run.
    [[nodiscard]] QString statusFilePath() const { return m_statusFilePath; }
    /// Absolute path of the run's log; empty for a removal.
    [[nodiscard]] QString logFilePath() const { return m_logFilePath; }
    /// Absolute path of the copy of the last failed run's log; empty if no run failed with a log.
    [[nodiscard]] QString lastLogPath() const { return m_lastLogPath; }

public Q_SLOTS:
    /// Reads what the engine program has reported since the last poll. Failures to read are silent:
    /// the next poll tries again.
    void poll();

Q_SIGNALS:
    /// The run's progress, 0 to 1, each time it has grown by more than a ten-thousandth; exactly 1
    /// right before a successful end.
    void progress(double fraction);
    /// The file the engine program is working on, each time it is another one.
    void currentFile(const QString &path);
    /// The engine program's own words on what it is doing, each time they change.
    void statusChanged(const QString &status);
    /// Exactly once per run that nobody stops, when nothing of the run works any more: after a
    /// failure all of it is killed, after a success it has two and a half seconds to finish.
    /// `error` is a sentence for the user, empty on success. After a crash the engine program's
    /// last words may still follow.
    void finished(bool ok, const QString &error);

private:
    void beginRun(const QString &statusFileName);
    void launch(const QString &program, const QString &arguments);
    void onProcessError();
    void onProcessFinished(int exitCode, QProcess::ExitStatus exitStatus);
    /// Tells of the success as soon as nothing of the run works any more, or takes too long for it.
    void succeedWhenAlone();
    void endProcesses();
    void setCurrentFile(const QString &path);
    /// Keeps a copy of the run's log and returns what it says about the failure; empty without a
    /// log.
    [[nodiscard]] QString keepAndSummarizeLog();

    QString m_setupExecutable;
    QString m_statusFilePath;
    QString m_logFilePath;
    QString m_lastLogPath;
    double m_lastFraction = 0.0;
    QString m_currentFile;
    QString m_status;
    LogTail m_logTail;
    QProcess *m_process =
        nullptr; ///< owned; deleted through the event loop, it may be its own sender
    std::unique_ptr<ProcessTree> m_processTree; ///< what the run's process has become
    QTimer m_pollTimer;
    QDeadlineTimer m_lastPartPatience; ///< for what the process, which has ended well, left to do
    bool m_hasEnded = false;
    int m_stopCount = 0; ///< tells whoever emits a signal that its receiver has stopped the run
};
