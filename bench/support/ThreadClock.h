#pragma once

#include "support/SystemClock.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace ambrel {

/// Wall clock of one thread without the time in which it was ready to run but another program had the processor:
/// what it would take on a machine of its own, waits for locks and for the display server included.
class ThreadClock
{
public:
    /// Opens the clock of the calling thread.
    ThreadClock() : m_schedule(::open("/proc/thread-self/schedstat", O_RDONLY | O_CLOEXEC)) {}
    ~ThreadClock() { ::close(m_schedule); }
    ThreadClock(const ThreadClock &) = delete;
    ThreadClock &operator=(const ThreadClock &) = delete;

    /// Milliseconds since some moment.
    double milliseconds() const
    {
        double waited = 0;
        double wall = 0;
        do {
            waited = waitedMilliseconds();
            wall = wallMilliseconds();
        } while (waitedMilliseconds() > waited); // the processor was taken away between the two
        return wall - waited;
    }

    static double wallMilliseconds() { return millisecondsOn(CLOCK_MONOTONIC); }

    /// Milliseconds in which this thread waited for a processor so far; 0 where the kernel does not count them.
    double waitedMilliseconds() const
    {
        char text[96] = {};
        long long ran = 0;
        long long waited = 0;
        if (pread(m_schedule, text, sizeof text - 1, 0) <= 0 || std::sscanf(text, "%lld %lld", &ran, &waited) != 2)
            return 0;
        return static_cast<double>(waited) / 1e6;
    }

private:
    const int m_schedule;
};

} // namespace ambrel
