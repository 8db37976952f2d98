#pragma once

#include "widgets/onscreenwatcher.h"

#include <QPropertyAnimation>
#include <QWidget>

/// The thin, rounded progress bar. It glides to each new value; while none is known, a segment
/// sweeps across it.
class ProgressTrack : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(double value READ value WRITE setValue)
    Q_PROPERTY(double indeterminatePhase READ indeterminatePhase WRITE setIndeterminatePhase)

public:
    explicit ProgressTrack(QWidget *parent = nullptr);

    /// Filled fraction as it is painted, 0 to 1; the setter clamps.
    [[nodiscard]] double value() const { return m_value; }
    void setValue(double value);

    /// Position of the sweeping segment, 0 to 1.
    [[nodiscard]] double indeterminatePhase() const { return m_phase; }
    void setIndeterminatePhase(double phase);

    /// The value that the bar has or glides to, 0 to 1.
    [[nodiscard]] double target() const { return m_target; }
    /// Glides to `fraction`, clamped to 0 to 1, from the present value.
    void setTarget(double fraction);
    /// The same in percent, clamped to 0 to 100.
    void setTargetPercent(int percent) { setTarget(percent / 100.0); }
    /// Jumps to the target if the bar is gliding.
    void settle();
    /// Empties the bar at once.
    void reset();

    void setIndeterminate(bool indeterminate);

    [[nodiscard]] QSize sizeHint() const override { return { 240, 4 }; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void announceTarget();
    void updateSweep();

    double m_value = 0.0;
    double m_target = 0.0;
    bool m_indeterminate = false;
    double m_phase = 0.0;
    QPropertyAnimation m_valueAnimation;
    QPropertyAnimation m_phaseAnimation;
    OnScreenWatcher m_onScreen;
};
