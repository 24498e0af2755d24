#include "support/MainThreadTurns.h"

#include "support/ThreadClock.h"

#include <dlfcn.h>
#include <optional>
#include <poll.h>
#include <utility>

namespace {

struct Recorder
{
    ambrel::ThreadClock clock;
    std::vector<ambrel::Turn> turns;
    double wokeAt = 0;
    double wokeAtWall = 0;

    void wake()
    {
        wokeAt = clock.milliseconds();
        wokeAtWall = ambrel::ThreadClock::wallMilliseconds();
    }
    void sleep()
    {
        turns.push_back({clock.milliseconds() - wokeAt, ambrel::ThreadClock::wallMilliseconds() - wokeAtWall});
    }
};

std::optional<Recorder> recorder;

// An event loop waits for many descriptors; a wait for one alone is part of a turn (for the display server, say).
bool isEventLoop(nfds_t count)
{
    return recorder && count > 1 && gettid() == getpid();
}

template <typename Wait>
int recorded(nfds_t count, Wait wait)
{
    if (!isEventLoop(count))
        return wait();
    recorder->sleep();
    const int ready = wait();
    recorder->wake();
    return ready;
}

} // namespace

// These stand before the ones of the C library, which both kinds of event loop of the toolkit call.

extern "C" int poll(pollfd *descriptors, nfds_t count, int timeout)
{
    static const auto original = reinterpret_cast<decltype(&poll)>(dlsym(RTLD_NEXT, "poll"));
    return recorded(count, [&] { return original(descriptors, count, timeout); });
}

extern "C" int ppoll(pollfd *descriptors, nfds_t count, const timespec *timeout, const sigset_t *signals)
{
    static const auto original = reinterpret_cast<decltype(&ppoll)>(dlsym(RTLD_NEXT, "ppoll"));
    return recorded(count, [&] { return original(descriptors, count, timeout, signals); });
}

namespace ambrel {

void startRecordingTurns()
{
    recorder.emplace();
    recorder->wake();
}

std::vector<Turn> takeTurns()
{
    return std::exchange(recorder->turns, {});
}

} // namespace ambrel
