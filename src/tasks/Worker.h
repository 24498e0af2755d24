#pragma once

#include "tasks/HandOff.h"

namespace ambrel {

/// Runs `work()` on the worker pool. It must not throw. Callable from any thread.
void startOnWorker(std::function<void()> work);

/// Blocks until all work that was started has ended: for the end of the program.
void waitForWorkers();

/// Runs `work()` on the worker pool; `co_await` its value, or its exception, on the calling thread.
template <typename Work>
auto runOnWorker(Work work)
{
    HandOff<decltype(work())> result;
    startOnWorker([result, job = std::move(work)]() mutable { result.finish(outcomeOf(job)); });
    return result;
}

/// Destroys `value` on the worker pool: freeing a large reply takes milliseconds.
template <typename Value>
void destroyOnWorker(Value value)
{
    auto shared = std::make_shared<Value>(std::move(value));
    startOnWorker([doomed = std::move(shared)]() mutable { doomed.reset(); });
}

} // namespace ambrel
