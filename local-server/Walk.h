#pragma once

#include "local-server/Geography.h"

#include <chrono>

namespace ambrel::local {

/// The endless way of one person: from close by to far away and back, smoothly, drifting to the sides.
struct Walk
{
    double nearestMeters = 0;
    double farthestMeters = 0;
    std::chrono::milliseconds period{}; ///< from one closest point to the next
    double phase = 0;                   ///< where the walk starts, in turns; 0 is the closest point
    double bearing = 0;                 ///< main direction from the centre, radians clockwise from north

    /// Where the person is after `turns` periods of walking around `centre`.
    Coordinates positionAfter(const Coordinates &centre, double turns) const;
};

/// The way of person number `index`. Number 0 starts within 100 m, number 1 at the far end and on the way here.
Walk walkOf(int index, quint32 seed);

} // namespace ambrel::local
