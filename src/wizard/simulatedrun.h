#pragma once

#include "wizard/setuprun.h"

#include <QTimer>

/// Stands in for the setup engine when there is none, so that every screen can be shown: a timed
/// run with made-up file names that touches nothing.
class SimulatedRun : public SetupRun
{
    Q_OBJECT

public:
    /// Each tick of 70 ms adds `step` percentage points. On about every fifth there is another
    /// file.
    explicit SimulatedRun(double step);

    void start() override;
    [[nodiscard]] bool isReal() const override { return false; }

private:
    void tick();

    QTimer m_timer;
    const double m_step;
    double m_percent = 0.0;
    int m_fileCount = 0;
};
