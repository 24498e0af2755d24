// Loaded into a program before its libraries (LD_PRELOAD): when the program hands its first picture to the display
// server, says when that was, how long the main thread had waited for a processor until then and how much processor
// time all threads had used, and ends it.

#include "support/SystemClock.h"
#include "support/ThreadClock.h"

#include <cstdlib>

namespace {

// Opened before anything else runs, on the main thread.
const ambrel::ThreadClock mainThread;

} // namespace

/// Stands before the function of the same name that the toolkit sends its window contents with.
extern "C" [[gnu::visibility("default")]] unsigned xcb_shm_put_image()
{
    const double report[] = {ambrel::ThreadClock::wallMilliseconds(), mainThread.waitedMilliseconds(),
                             ambrel::millisecondsOn(CLOCK_PROCESS_CPUTIME_ID)};
    const char *const descriptor = std::getenv("AMBREL_FIRST_PICTURE");
    const bool isTold = descriptor && write(std::atoi(descriptor), report, sizeof report) == sizeof report;
    _exit(isTold ? 0 : 1);
}
