#pragma once

namespace ambrel {

/// Starts asking the desktop's settings portal whether animations are unwanted, and follows later changes.
/// Returns at once; without a portal, motion is welcome. Main thread.
void watchReducedMotion();

/// Whether the desktop is known to want no animations. Main thread.
bool isMotionReduced();

} // namespace ambrel
