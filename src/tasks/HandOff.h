#pragma once

#include "tasks/Mailbox.h"

#include <coroutine>
#include <exception>
#include <memory>
#include <optional>
#include <variant>

namespace ambrel {

/// What work ended with: its value, or the exception it threw.
template <typename Value>
using Outcome = std::variant<Value, std::exception_ptr>;

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
            shared->outcome = std::move(*arrived);
            if (shared->waiter)
                std::exchange(shared->waiter, nullptr).resume();
        });
    }

    bool await_ready() const noexcept { return m_shared->outcome.has_value(); }
    void await_suspend(std::coroutine_handle<> waiter) const noexcept { m_shared->waiter = waiter; }
    Value await_resume() const
    {
        Outcome<Value> outcome = std::move(*m_shared->outcome);
        if (const auto *const error = std::get_if<std::exception_ptr>(&outcome))
            std::rethrow_exception(*error);
        return std::get<Value>(std::move(outcome));
    }

private:
    /// Touched on the home thread alone, except for `home`, which never changes.
    struct Shared
    {
        const std::weak_ptr<Mailbox> home = Mailbox::ofThisThread();
        std::optional<Outcome<Value>> outcome;
        std::coroutine_handle<> waiter;
    };
    std::shared_ptr<Shared> m_shared;
};

} // namespace ambrel
