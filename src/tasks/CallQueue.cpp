#include "tasks/CallQueue.h"

#include "tasks/RaceChecker.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMetaObject>

namespace ambrel {

std::shared_ptr<CallQueue> CallQueue::ofThisThread()
{
    thread_local const auto queue = std::make_shared<CallQueue>();
    return queue;
}

void CallQueue::post(std::function<void()> call)
{
    ++m_waiting;
    handedOver();
    QMetaObject::invokeMethod(
        &m_receiver,
        [this, call = std::move(call)] {
            takenOver();
            --m_waiting;
            call();
        },
        Qt::QueuedConnection);
}

bool CallQueue::deliver()
{
    if (m_waiting == 0)
        return false;
    QCoreApplication::sendPostedEvents(&m_receiver, QEvent::MetaCall);
    return true;
}

} // namespace ambrel
