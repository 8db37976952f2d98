#include "widgets/course.h"

#include "pages/manualclock.h"

#include <algorithm>
#include <cmath>

namespace {

/// The first animation to run may be this much ahead of the clock, in ms.
constexpr double kAhead = 2.0;
constexpr double kRoundingError = 1e-9;

constexpr int kSteps = 10;
/// So long before its end no animation may be through, in ms.
constexpr int kRest = 3;

} // namespace

double Course::at(double time) const
{
    return from + (to - from) * curve.valueForProgress(std::clamp(time / duration, 0.0, 1.0));
}

QString departure(ManualClock &clock, const Course &course, const std::function<double()> &value)
{
    const auto isAt = [&value](double place) { return std::abs(value() - place) < kRoundingError; };
    const auto wrong = [&value](int time, const QString &expected) {
        return QStringLiteral("%1 at %2 ms, should be %3").arg(value()).arg(time).arg(expected);
    };
    if (!isAt(course.from))
        return wrong(0, QString::number(course.from));
    const double last = course.duration - kRest;
    int time = 0;
    for (int step = 1; step <= kSteps; ++step) {
        const int next = int(last * step / kSteps);
        clock.pass(next - time);
        time = next;
        double lowest = course.at(time);
        double highest = lowest;
        for (double ahead = 0.0; ahead <= kAhead; ahead += kAhead / 8) {
            lowest = qMin(lowest, course.at(time + ahead));
            highest = qMax(highest, course.at(time + ahead));
        }
        if (value() < lowest - kRoundingError || value() > highest + kRoundingError)
            return wrong(time, QStringLiteral("%1 to %2").arg(lowest).arg(highest));
    }
    if (isAt(course.to))
        return wrong(time, QStringLiteral("still on its way"));
    clock.pass(kRest);
    if (!isAt(course.to))
        return wrong(course.duration, QString::number(course.to));
    clock.pass(course.duration);
    if (!isAt(course.to))
        return wrong(2 * course.duration, QStringLiteral("at rest"));
    return {};
}
