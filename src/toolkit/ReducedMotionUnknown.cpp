// Where there is no desktop bus to ask, motion is welcome.
#include "toolkit/ReducedMotion.h"

namespace ambrel {

void watchReducedMotion() {}

bool isMotionReduced()
{
    return false;
}

} // namespace ambrel
