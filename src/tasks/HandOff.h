#pragma once

#include "tasks/CallQueue.h"

#include <coroutine>
#include <exception>
#include <optional>
#include <utility>

namespace ambrel {

/// What work ended with: its value, or the exception it threw.
template <typename Value>
struct Outcome
{
    Outcome(Value result) : value(std::move(result)) {}                         // NOLINT: a value is an outcome
    Outcome(std::exception_ptr failure) noexcept : error(std::move(failure)) {} // NOLINT: and so is a failure

    std::optional<Value> value;
    std::exception_ptr error;
};

/// Calls `work()` and catches whatever it throws.
template <typename Work>
auto outcomeOf(Work &&work) -> Outcome<decltype(work())>
{
    try {
        return work();
    } catch (...) {
        return std::current_exception();
    }
}

/// A value on its way from another thread to the thread that made this object; `co_await` it there. The coroutine
/// resumes from the event loop, never inside `finish`. Copies share the one value; one coroutine may wait for it.
template <typename Value>
class HandOff
{
public:
    HandOff() : m_shared(std::make_shared<Shared>()) {}

    /// Sends the outcome home. Any thread, exactly once.
    void finish(Outcome<Value> outcome) const
    {
        const auto home = m_shared->home.lock();
        if (!home)
            return; // the waiting thread has ended
        auto sent = std::make_shared<Outcome<Value>>(std::move(outcome));
        home->post([shared = m_shared, arrived = std::move(sent)] {
            shared->outcome = arrived;
            if (shared->waiter)
                std::exchange(shared->waiter, nullptr).resume();
        });
    }

    bool await_ready() const noexcept { return m_shared->outcome != nullptr; }
    void await_suspend(std::coroutine_handle<> waiter) const noexcept { m_shared->waiter = waiter; }
    Value await_resume() const
    {
        if (m_shared->outcome->error)
            std::rethrow_exception(m_shared->outcome->error);
        return *std::move(m_shared->outcome->value);
    }

private:
    /// Touched on the home thread alone, except for `home`, which never changes.
    struct Shared
    {
        const std::weak_ptr<CallQueue> home = CallQueue::ofThisThread();
        std::shared_ptr<Outcome<Value>> outcome; // null until it has arrived
        std::coroutine_handle<> waiter;
    };
    std::shared_ptr<Shared> m_shared;
};

} // namespace ambrel
