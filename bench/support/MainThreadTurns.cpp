#include "support/MainThreadTurns.h"

#include "support/ThreadClock.h"

#include <csignal>
#include <cstdint>
#include <dlfcn.h>
#include <optional>
#include <poll.h>
#include <sys/stat.h>
#include <utility>

namespace {

struct Recorder
{
    ambrel::ThreadClock clock;
    std::vector<ambrel::Turn> turns;
    double wokeAt = clock.milliseconds();
    double wokeAtWall = ambrel::ThreadClock::wallMilliseconds();
    double displayTime = 0; ///< spent waiting for the display server in this turn

    template <typename Wait>
    int betweenTurns(Wait wait)
    {
        turns.push_back({clock.milliseconds() - wokeAt - std::exchange(displayTime, 0),
                         ambrel::ThreadClock::wallMilliseconds() - wokeAtWall, wokeAtWall});
        const int ready = wait();
        wokeAt = clock.milliseconds();
        wokeAtWall = ambrel::ThreadClock::wallMilliseconds();
        return ready;
    }

    template <typename Wait>
    void *withinTurn(Wait wait)
    {
        const double begin = clock.milliseconds();
        void *const reply = wait();
        displayTime += clock.milliseconds() - begin;
        return reply;
    }
};

std::optional<Recorder> recorder;

bool isMainThread()
{
    return gettid() == getpid();
}

template <typename Wait>
int recordedPoll(const pollfd *descriptors, nfds_t count, Wait wait)
{
    struct stat kind
    {
    };
    const bool isForDisplayServer = count == 1 && fstat(descriptors->fd, &kind) == 0 && S_ISSOCK(kind.st_mode);
    return !recorder || !isMainThread() || isForDisplayServer ? wait() : recorder->betweenTurns(wait);
}

template <typename Wait>
void *recordedReply(Wait wait)
{
    return recorder && isMainThread() ? recorder->withinTurn(wait) : wait();
}

} // namespace

// These stand before the ones of the C library, which both kinds of event loop of the toolkit call, and those of the
// display server's library.

extern "C" int poll(pollfd *descriptors, nfds_t count, int timeout)
{
    static const auto original = reinterpret_cast<decltype(&poll)>(dlsym(RTLD_NEXT, "poll"));
    return recordedPoll(descriptors, count, [&] { return original(descriptors, count, timeout); });
}

extern "C" int ppoll(pollfd *descriptors, nfds_t count, const timespec *timeout, const sigset_t *signals)
{
    static const auto original = reinterpret_cast<decltype(&ppoll)>(dlsym(RTLD_NEXT, "ppoll"));
    return recordedPoll(descriptors, count, [&] { return original(descriptors, count, timeout, signals); });
}

extern "C" void *xcb_wait_for_reply(void *connection, unsigned request, void **error)
{
    static const auto original =
        reinterpret_cast<decltype(&xcb_wait_for_reply)>(dlsym(RTLD_NEXT, "xcb_wait_for_reply"));
    return recordedReply([&] { return original(connection, request, error); });
}

extern "C" void *xcb_wait_for_reply64(void *connection, std::uint64_t request, void **error)
{
    static const auto original =
        reinterpret_cast<decltype(&xcb_wait_for_reply64)>(dlsym(RTLD_NEXT, "xcb_wait_for_reply64"));
    return recordedReply([&] { return original(connection, request, error); });
}

namespace ambrel {

void startRecordingTurns()
{
    recorder.emplace();
}

std::vector<Turn> takeTurns()
{
    return std::exchange(recorder->turns, {});
}

} // namespace ambrel
