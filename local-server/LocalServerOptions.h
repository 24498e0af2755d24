#pragma once

#include "local-server/Time.h"

namespace ambrel {

/// How lively the neighbourhood is. Everything that happens follows from these values and the clock.
struct LocalServerOptions
{
    using Duration = std::chrono::milliseconds;

    int people = 6;                                      ///< simulated people around every user
    quint32 seed = 1;                                    ///< chooses the ways they walk
    double walkingPace = 1;                              ///< 0 makes everybody stand still, 2 doubles the speed
    Duration answerDelay = std::chrono::seconds(2);      ///< from a See Me to its answer
    Duration firstSeeMeDelay = std::chrono::seconds(15); ///< from the first position to the first See Me of their own
    Duration seeMeInterval = std::chrono::seconds(45);   ///< least pause between two See Me of their own
    local::Clock clock = local::systemTime;
};

} // namespace ambrel
