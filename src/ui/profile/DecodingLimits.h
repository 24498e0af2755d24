#pragma once

#include <chrono>
#include <functional>

namespace ambrel {

/// What one decoding may cost, and whether anybody still waits for it.
struct DecodingLimits
{
    std::chrono::milliseconds maxProcessorTime{1000};
    /// Asked on the decoding thread, often; the decoding is given up once it returns false.
    std::function<bool()> isWanted = [] { return true; };
};

/// Tells a decoder when to give up. Belongs to the thread that made it.
class DecodingWatch
{
public:
    /// Starts counting the processor time of the calling thread.
    explicit DecodingWatch(DecodingLimits limits);

    /// True from the moment on at which the time is used up or nobody waits any more.
    bool isOver();

private:
    const DecodingLimits m_limits;
    const std::chrono::nanoseconds m_start;
    bool m_isOver = false;
};

} // namespace ambrel
