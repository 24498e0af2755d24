#pragma once

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

namespace ambrel {

/// Seconds that one call of `work` takes.
template <typename Work>
double secondsFor(Work &&work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The median seconds of each of two pieces of work, run in turn so that both meet the same weather.
template <typename First, typename Second>
std::pair<double, double> interleavedMedians(int rounds, First &&first, Second &&second)
{
    std::vector<double> firsts;
    std::vector<double> seconds;
    for (int round = 0; round < rounds; ++round) {
        firsts.push_back(secondsFor(first));
        seconds.push_back(secondsFor(second));
    }
    const auto median = [](std::vector<double> &times) {
        std::nth_element(times.begin(), times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2), times.end());
        return times[times.size() / 2];
    };
    return {median(firsts), median(seconds)};
}

} // namespace ambrel
