#pragma once

#include <QEasingCurve>
#include <QString>

#include <functional>

class ManualClock;

/// How an animated number changes over time.
struct Course
{
    double from;
    double to;
    int duration; ///< ms
    QEasingCurve curve;

    [[nodiscard]] double at(double time) const;
};

/// Lets time go by for an animation that has just been started, and compares `value` with `course`
/// at its start, on the way and up to its end. Empty if the number keeps to it, else the first
/// place where it does not.
[[nodiscard]] QString departure(ManualClock &clock, const Course &course,
                                const std::function<double()> &value);
