#include "tasks/Worker.h"

#include <QCoreApplication>
#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace ambrel {

namespace {

/// A few threads that take work from one queue, made when there is work for them. Not the toolkit's pool: its
/// painting splits large areas over the global one and waits for it, so the window would stand still while workers
/// are busy there, and a race checker cannot see its locks.
class Pool
{
public:
    ~Pool();
    void start(std::function<void()> work);
    void wait();

private:
    void run();

    std::mutex m_mutex; // guards everything below
    std::condition_variable m_hasWork;
    std::condition_variable m_isIdle;
    std::deque<std::function<void()>> m_queue;
    std::vector<std::thread> m_threads;
    std::size_t m_busy = 0;
    bool m_ending = false;
};

Pool::~Pool()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
        m_hasWork.notify_all();
    }
    for (std::thread &thread : m_threads)
        thread.join();
}

void Pool::start(std::function<void()> work)
{
    const std::lock_guard lock(m_mutex);
    m_queue.push_back(std::move(work));
    const std::size_t most = std::max(1U, std::thread::hardware_concurrency());
    if (m_busy + m_queue.size() > m_threads.size() && m_threads.size() < most)
        m_threads.emplace_back([this] { run(); });
    else
        m_hasWork.notify_one();
}

void Pool::wait()
{
    std::unique_lock lock(m_mutex);
    m_isIdle.wait(lock, [this] { return m_queue.empty() && m_busy == 0; });
}

void Pool::run()
{
    std::unique_lock lock(m_mutex);
    while (true) {
        m_hasWork.wait(lock, [this] { return m_ending || !m_queue.empty(); });
        if (m_queue.empty())
            return;
        std::function<void()> work = std::move(m_queue.front());
        m_queue.pop_front();
        ++m_busy;
        lock.unlock();
        work();
        work = nullptr;
        lock.lock();
        --m_busy;
        m_isIdle.notify_all();
    }
}

Pool &pool()
{
    static Pool workers;
    static std::once_flag ending;
    std::call_once(ending, [] { qAddPostRoutine(waitForWorkers); });
    return workers;
}

} // namespace

void startOnWorker(std::function<void()> work)
{
    pool().start(std::move(work));
}

void waitForWorkers()
{
    pool().wait();
}

} // namespace ambrel
