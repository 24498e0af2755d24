#include "tasks/CallQueue.h"

#include "tasks/RaceChecker.h"

#include <QCoreApplication>
#include <QEvent>

namespace ambrel {

namespace {

/// A call on its way. An event of our own is whole before it is handed over, which the race checker has to be told; a
/// queued invocation is put together by the toolkit while it hands it over.
class Call : public QEvent
{
public:
    explicit Call(std::function<void()> call) : QEvent(eventType()), run(std::move(call)) {}
    static Type eventType()
    {
        static const auto type = static_cast<Type>(registerEventType());
        return type;
    }

    const std::function<void()> run;
};

} // namespace

std::shared_ptr<CallQueue> CallQueue::ofThisThread()
{
    thread_local const auto queue = std::make_shared<CallQueue>();
    return queue;
}

void CallQueue::post(std::function<void()> call)
{
    auto event = std::make_unique<Call>(std::move(call));
    ++m_waiting;
    handedOver();
    QCoreApplication::postEvent(this, event.release()); // which owns it
}

bool CallQueue::deliver()
{
    if (m_waiting == 0)
        return false;
    QCoreApplication::sendPostedEvents(this, Call::eventType());
    return true;
}

bool CallQueue::event(QEvent *event)
{
    if (event->type() != Call::eventType())
        return QObject::event(event);
    takenOver();
    --m_waiting;
    static_cast<Call *>(event)->run();
    return true;
}

} // namespace ambrel
