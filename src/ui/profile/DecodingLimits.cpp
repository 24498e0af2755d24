#include "ui/profile/DecodingLimits.h"

#include <ctime>
#include <utility>

namespace ambrel {

namespace {

/// Processor time of the calling thread, so that a busy machine costs nobody a photo. Where the system does not tell
/// it, time of day.
std::chrono::nanoseconds timeOfThisThread()
{
#ifdef CLOCK_THREAD_CPUTIME_ID
    timespec time{};
    if (clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time) == 0)
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
#endif
    return std::chrono::steady_clock::now().time_since_epoch();
}

} // namespace

DecodingWatch::DecodingWatch(DecodingLimits limits) : m_limits(std::move(limits)), m_start(timeOfThisThread()) {}

bool DecodingWatch::isOver()
{
    m_isOver = m_isOver || timeOfThisThread() - m_start >= m_limits.maxProcessorTime || !m_limits.isWanted();
    return m_isOver;
}

} // namespace ambrel
