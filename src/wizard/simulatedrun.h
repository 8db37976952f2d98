#pragma once

#include <QObject>
#include <QTimer>

/// Stands in for the setup engine when there is none, so that every screen can be shown: a timed
/// run with made-up file names that touches nothing.
class SimulatedRun : public QObject
{
    Q_OBJECT

public:
    explicit SimulatedRun(QObject *parent = nullptr);

    /// Starts over from 0; each tick of 70 ms adds `step` percentage points.
    void start(double step);
    /// Ends the run without a word.
    void stop();
    [[nodiscard]] bool isRunning() const { return m_timer.isActive(); }

Q_SIGNALS:
    /// On every tick, 0 to 1.
    void progress(double fraction);
    /// On about every fifth tick.
    void currentFile(const QString &path);
    /// Once, right after a progress of 1.
    void finished();

private:
    void tick();

    QTimer m_timer;
    double m_step = 0.0;
    double m_percent = 0.0;
    int m_fileCount = 0;
};
