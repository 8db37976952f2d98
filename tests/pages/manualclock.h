#pragma once

#include <QAnimationDriver>

/// Holds every property animation still for as long as it lives; they only move when told how much
/// time goes by. Timers are not affected. Right to the millisecond, but for one: an animation that
/// is the first to run may be that much ahead.
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
