#pragma once

#include <QObject>
#include <atomic>
#include <functional>
#include <memory>

namespace ambrel {

/// The calls that other threads have sent to one thread; its Qt event loop runs them.
class CallQueue : public QObject
{
public:
    /// The queue of the calling thread.
    static std::shared_ptr<CallQueue> ofThisThread();

    /// Runs `call` on the queue's own thread, from its event loop, in the order of posting; drops it when that thread
    /// has ended. Any thread.
    void post(std::function<void()> call);

    /// Runs what has been posted so far; false when that was nothing. Own thread; needed only where no event loop
    /// turns any more.
    bool deliver();

    /// Runs a call that was posted.
    bool event(QEvent *event) override;

private:
    std::atomic<int> m_waiting = 0;
};

} // namespace ambrel
