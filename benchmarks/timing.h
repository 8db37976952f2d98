#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

/// Median wall-clock time of `runs` calls of `work`, in seconds. One call more goes ahead uncounted, so
/// that caches are warm for everybody who is compared.
template <typename Work>
double medianSeconds(int runs, Work work)
{
    work();
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        const auto start = std::chrono::steady_clock::now();
        work();
        times.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    const auto middle = times.begin() + runs / 2;
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}
