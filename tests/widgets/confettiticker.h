#pragma once

#include <QObject>

class ConfettiOverlay;
class QTimer;

/// Holds an overlay's timer still: the confetti only flies on when told to.
class ConfettiTicker : public QObject
{
    Q_OBJECT

public:
    explicit ConfettiTicker(ConfettiOverlay &overlay);

    [[nodiscard]] QTimer &timer() const { return *m_timer; }

    /// Lets the timer fire `times` times, or until it is stopped.
    void tick(int times = 1);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QTimer *m_timer;
    bool m_ticking = false;
};
