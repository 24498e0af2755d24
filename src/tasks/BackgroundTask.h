#pragma once

#include <QCoroTask>
#include <stop_token>

namespace ambrel {

/// Handle of a coroutine that runs on the main thread until it is asked to stop.
/// Copies share the task; dropping the last handle does not stop it.
class BackgroundTask
{
public:
    /// Starts `body(token)` at once. The body must handle its own errors.
    template <typename Body>
    explicit BackgroundTask(Body body)
    {
        QCoro::Task<> task = body(m_stop.get_token());
        Q_UNUSED(task) // a task starts by itself and outlives its handle
    }

    /// Asks the task to end at its next check; a sleep in progress ends now.
    void cancel() { m_stop.request_stop(); }

private:
    std::stop_source m_stop;
};

} // namespace ambrel
