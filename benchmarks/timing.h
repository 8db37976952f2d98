#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <ctime>
#include <vector>

inline double median(std::vector<double> values)
{
    const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Wall-clock time of one call of `work`, in seconds.
template <typename Work>
double secondsOf(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Median wall-clock time of `runs` calls of `work`, in seconds. One call more goes ahead
/// uncounted, so that caches are warm for everybody who is compared.
template <typename Work>
double medianSeconds(int runs, Work work)
{
    work();
    std::vector<double> times;
    for (int i = 0; i < runs; ++i)
        times.push_back(secondsOf(work));
    return median(times);
}

/// The same for one of `steps` calls of `step` in a row, which is too short to be timed by itself.
template <typename Step>
double medianSecondsPerStep(int runs, int steps, Step step)
{
    const double seconds = medianSeconds(runs, [&] {
        for (int i = 0; i < steps; ++i)
            step(i);
    });
    return seconds / steps;
}

/// What a step of two kinds of work takes, in seconds of the processor, all threads together.
struct Comparison
{
    double ours;
    double other;
    double ratio; ///< how many times longer the other takes
};

/// Lets both do `steps` steps in turn, `runs` times, so that what else the machine does falls on
/// both alike. Medians.
template <typename Ours, typename Other>
Comparison compareSteps(int runs, int steps, Ours ours, Other other)
{
    const auto secondsPerStep = [steps](auto &step) {
        const std::clock_t start = std::clock();
        for (int i = 0; i < steps; ++i)
            step(i);
        return double(std::clock() - start) / CLOCKS_PER_SEC / steps;
    };
    std::vector<double> ourTimes;
    std::vector<double> otherTimes;
    std::vector<double> ratios;
    for (int i = 0; i <= runs; ++i) {
        const double ourTime = secondsPerStep(ours);
        const double otherTime = secondsPerStep(other);
        if (i == 0)
            continue; // that was for the caches
        ourTimes.push_back(ourTime);
        otherTimes.push_back(otherTime);
        ratios.push_back(otherTime / ourTime);
    }
    return { median(ourTimes), median(otherTimes), median(ratios) };
}
