#pragma once

#include <QCoroTask>
#include <stop_token>

namespace ambrel {

/// Lets a coroutine run on by itself: it has started already, and nobody waits for it. It must handle its own errors.
inline void runDetached(const QCoro::Task<> &) {}

/// Handle of a coroutine that runs on the main thread until it is asked to stop.
/// Copies share the task; dropping the last handle does not stop it.
class BackgroundTask
{
public:
    /// Starts `body(token)` at once. The body must handle its own errors.
    template <typename Body>
    explicit BackgroundTask(Body body)
    {
        runDetached(body(m_stop.get_token()));
    }

    /// Asks the task to end at its next check; a sleep in progress ends now.
    void cancel() { m_stop.request_stop(); }

private:
    std::stop_source m_stop;
};

} // namespace ambrel
