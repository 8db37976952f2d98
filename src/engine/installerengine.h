#pragma once

#include "files/guardedfile.h"

#include <QObject>
#include <QString>
#include <QStringList>

class EngineRun;

/// Runs the silent setup engine as a child process and tells how far it is and how it ended.
///
/// The engine program reports through two temporary files, a small status file that it keeps
/// rewriting and a log that only grows; both are polled every 50 ms. Of what a run is, see
/// EngineRun: it lasts from its start until the next start, stop() or the end of this object, and
/// so do its files.
class InstallerEngine : public QObject
{
    Q_OBJECT

public:
    explicit InstallerEngine(QObject *parent = nullptr);
    ~InstallerEngine() override;

    /// Program that installs and updates; empty if none was given. A relative path counts from the
    /// current folder, also a bare name: it is never looked for elsewhere.
    [[nodiscard]] QString setupExecutable() const { return m_setupExecutable; }
    /// Guards it too.
    void setSetupExecutable(const QString &path);

    /// Keeps `program` from being exchanged until it has been started: what is started is then what
    /// was there when the user was told of it. There is one guarded program at a time. An empty
    /// name only releases that. The result is empty, or the system's words on why not.
    QString guard(const QString &program);

    /// Starts an installation or an update into `folder` (a bare drive gets the product's folder
    /// appended). Without a setup executable, or if the folder's name cannot be put on a command
    /// line, the run ends at once and a previous one stays as it is.
    void startInstall(const QString &folder, const QStringList &tasks);

    /// Starts a removal by the uninstaller at `uninstallerPath`. If there is no such file the run
    /// ends at once and a previous one stays as it is.
    void startUninstall(const QString &uninstallerPath);

    /// Ends a run without any further signal, also if it is called from one: kills its processes,
    /// waits up to two seconds for them and for the temporary files that they have open, and
    /// deletes these. What a process that has ended well left running is not killed, but waited
    /// for, up to two and a half seconds more. The kept copy of a failed run's log stays.
    void stop();

    /// Absolute path of the run's status file; empty if there is no run.
    [[nodiscard]] QString statusFilePath() const;
    /// Absolute path of the run's log; empty for a removal.
    [[nodiscard]] QString logFilePath() const;
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
    /// Exactly once per run that is not stopped, when no process of the run is left: after a
    /// failure all of them are killed, after a success they have two and a half seconds to finish.
    /// `error` is a sentence for the user, empty on success. After a crash the other signals may
    /// still come once, with what the engine program reported last.
    void finished(bool ok, const QString &error);

private:
    void startRun(const QString &program, const QString &arguments, const QString &statusFilePath,
                  const QString &logFilePath);

    QString m_setupExecutable;
    GuardedFile m_guarded; ///< until the start of a run
    QString m_lastLogPath;
    EngineRun *m_run = nullptr; ///< a child
};
