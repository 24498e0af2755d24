#include "tasks/Sleep.h"

#include <QCoroTimer>
#include <QTimer>

namespace ambrel {

QCoro::Task<bool> sleepFor(std::chrono::milliseconds duration, std::stop_token stop)
{
    if (stop.stop_requested())
        co_return false; // at exit no event loop is left to wake a timer
    QTimer timer;
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    timer.start(duration);

    // Only the timer resumes the coroutine; a stop merely makes it due now, so it resumes exactly once.
    bool interrupted = false;
    const std::stop_callback onStop(stop, [&timer, &interrupted] {
        interrupted = true;
        timer.start(0);
    });
    co_await timer;
    co_return !interrupted;
}

} // namespace ambrel
