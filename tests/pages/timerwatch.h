#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

class QTimer;

/// Records the interval of every QTimer that fires in this process, so that a test can check the
/// delay that was set instead of measuring time.
class TimerWatch : public QObject
{
    Q_OBJECT

public:
    TimerWatch();

    /// Intervals of the single shots that have fired, in their order.
    [[nodiscard]] QList<int> shots() const { return m_shots; }
    void clear() { m_shots.clear(); }

    /// The timer of that interval that fired last and repeats, null if none has.
    [[nodiscard]] QTimer *repeating(int interval) const;

    /// Lets `timer` fire `times` times right now, or until it is stopped.
    static void fire(QTimer *timer, int times);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QList<int> m_shots;
    QList<QPointer<QTimer>> m_repeating;
};
