#include "tasks/Worker.h"

#include <QThreadPool>
#include <deque>
#include <mutex>

namespace ambrel {

namespace {

/// A pool of our own: the toolkit's painting splits large areas over the global one and waits for it, so the window
/// would stand still while workers are busy there.
QThreadPool &pool()
{
    static QThreadPool workers;
    return workers;
}

std::mutex waitingMutex;
std::deque<std::function<void()>> waitingWork;

void runNext()
{
    std::function<void()> work;
    {
        const std::lock_guard lock(waitingMutex);
        work = std::move(waitingWork.front());
        waitingWork.pop_front();
    }
    work();
}

} // namespace

void startOnWorker(std::function<void()> work)
{
    // The pool runs a bare function and the work crosses under our own lock, as letters do in a Mailbox.
    const std::lock_guard lock(waitingMutex);
    waitingWork.push_back(std::move(work));
    pool().start(runNext);
}

void waitForWorkers()
{
    pool().waitForDone();
}

} // namespace ambrel
