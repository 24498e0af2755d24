#pragma once

#include "support/Samples.h"
#include "support/SystemClock.h"

#include <utility>
#include <vector>

namespace ambrel {

/// Seconds of processor time that this thread has used: what other programs do meanwhile does not count.
inline double threadSeconds()
{
    return millisecondsOn(CLOCK_THREAD_CPUTIME_ID) / 1e3;
}

/// Seconds of processor time that one call of `work` takes on this thread.
template <typename Work>
double secondsFor(Work &&work)
{
    const double start = threadSeconds();
    work();
    return threadSeconds() - start;
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
    return {medianOf(firsts), medianOf(seconds)};
}

} // namespace ambrel
