#pragma once

#include <QAnimationDriver>

/// Stops the clock of all property animations for as long as it lives; they only move in pass().
/// Timers are not affected. The first animation to run may be one millisecond ahead.
class ManualClock : public QAnimationDriver
{
    Q_OBJECT

public:
    ManualClock();
    ~ManualClock() override;

    /// Lets `milliseconds` go by at once.
    void pass(int milliseconds);

    qint64 elapsed() const override { return m_now; }

protected:
    void start() override;

private:
    qint64 m_now = 0;
};
