#pragma once

#include "tasks/HandOff.h"

#include <cerrno>
#include <chrono>
#include <system_error>

namespace ambrel {

/// Runs `work()` on the worker pool; it must not throw. False when no thread could be started for it: then it never
/// runs. Any thread; the first call waits until a worker runs, at most a second.
[[nodiscard]] bool startOnWorker(std::function<void()> work);

/// Waits until all work that was started has ended, but no longer than `time`; false when some has not. Any thread.
bool waitForWorkers(std::chrono::milliseconds time = std::chrono::minutes(1));

/// Runs `work()` on the worker pool; `co_await` its value on the calling thread, or its exception, which is
/// std::system_error when it could not be started.
template <typename Work>
auto runOnWorker(Work work)
{
    HandOff<decltype(work())> result;
    if (!startOnWorker([result, job = std::move(work)]() mutable { result.finish(outcomeOf(job)); }))
        result.finish(std::make_exception_ptr(std::system_error(EAGAIN, std::generic_category())));
    return result;
}

/// Destroys `value` on the worker pool, because freeing a large reply takes milliseconds; on the calling thread where
/// there is no worker.
template <typename Value>
void destroyOnWorker(Value value)
{
    auto shared = std::make_shared<Value>(std::move(value));
    (void)startOnWorker([doomed = std::move(shared)]() mutable { doomed.reset(); });
}

} // namespace ambrel
