#pragma once

#include <vector>

namespace ambrel {

/// One turn of the main thread's event loop: from waking up to going back to sleep. Nothing is painted and no key is
/// heard before it ends.
struct Turn
{
    /// Without the time in which other programs had the processor, or the display server had not got it: what the
    /// client itself does and what it waits for among its own threads.
    double milliseconds = 0;
    double wallMilliseconds = 0; ///< with all of it
    double wokeAt = 0;           ///< milliseconds on the wall clock
};

/// Forgets the turns so far and records from now on. Call it on the main thread.
void startRecordingTurns();
/// The turns since recording began or since they were last taken.
std::vector<Turn> takeTurns();

} // namespace ambrel
