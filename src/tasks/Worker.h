#pragma once

#include <QFuture>
#include <QtConcurrentRun>
#include <memory>

namespace ambrel {

/// Runs `work()` on the worker pool; an exception travels with the future. Callable from any thread.
template <typename Work>
auto runOnWorker(Work work)
{
    return QtConcurrent::run(std::move(work));
}

/// Destroys `value` on the worker pool: freeing a large reply takes milliseconds.
template <typename Value>
void destroyOnWorker(Value value)
{
    auto shared = std::make_shared<Value>(std::move(value));
    QThreadPool::globalInstance()->start([doomed = std::move(shared)]() mutable { doomed.reset(); });
}

} // namespace ambrel
