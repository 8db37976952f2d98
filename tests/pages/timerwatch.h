#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

class QTimer;

/// Takes down the interval of every timer object that fires in this process, so that a delay can be
/// judged by what it was set to and not by a clock.
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
