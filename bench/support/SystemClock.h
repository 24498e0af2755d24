#pragma once

#include <ctime>

namespace ambrel {

/// What one of the system's clocks shows, in milliseconds.
inline double millisecondsOn(clockid_t clock)
{
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

} // namespace ambrel
