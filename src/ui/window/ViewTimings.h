#pragma once

#include <chrono>

namespace ambrel {

/// How long things in the window take; tests shorten them.
struct ViewTimings
{
    std::chrono::milliseconds flashFlip{450}; ///< from one colouring of the See Me flash to the other
    std::chrono::milliseconds flashFade{180}; ///< of the See Me flash, in and out
    std::chrono::milliseconds keyQuiet{700};  ///< without any key before one can dismiss an alert or a flash
};

} // namespace ambrel
