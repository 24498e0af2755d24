#pragma once

#include <chrono>

namespace ambrel {

/// The durations of everything that recurs; tests shorten them.
struct LiveTimings
{
    std::chrono::milliseconds livePause{5000};     ///< from the end of a live cycle to the next
    std::chrono::milliseconds seeMePause{2000};    ///< from the end of an inbox poll to the next
    std::chrono::milliseconds flashDuration{3500}; ///< of the See Me flash
};

} // namespace ambrel
