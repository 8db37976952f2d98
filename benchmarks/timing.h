#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

/// Median wall-clock time of `runs` calls of `work`, in seconds. One call more goes ahead
/// uncounted, so that caches are warm for everybody who is compared.
template <typename Work>
double medianSeconds(int runs, Work work)
{
    work();
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        const auto start = std::chrono::steady_clock::now();
        work();
        times.push_back(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    const auto middle = times.begin() + runs / 2;
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
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
