#include "tasks/Worker.h"

#include "tasks/RaceChecker.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QThreadPool>
#include <algorithm>
#include <condition_variable>
#include <latch>
#include <mutex>
#include <semaphore>
#include <vector>

namespace ambrel {

namespace {

constexpr std::chrono::seconds maxWait{1}; // for the first thread, and at exit

/// A pool of our own: the toolkit's painting splits large areas over the global one and waits for it, so the window
/// would stand still while workers are busy there (longest scrolling frame 45 instead of 8 ms). All threads start at
/// once and stay, because QThreadPool takes a thread that could not be started for one that runs: work that it gave to
/// such a thread would never be done.
class Workers
{
public:
    Workers();
    bool start(std::function<void()> work);
    bool wait(std::chrono::milliseconds time);

private:
    bool startThreads();

    std::mutex m_mutex; // guards what follows, down to the pool
    std::condition_variable m_areIdle;
    bool m_areRunning = false;
    int m_unfinished = 0; // pieces of work
    QThreadPool m_pool;
};

Workers::Workers()
{
    m_pool.setExpiryTimeout(-1);
    qAddPostRoutine([] { waitForWorkers(maxWait); });
}

/// Each thread of the toolkit opens a descriptor, and ends the program where there is none.
bool hasDescriptorsFor(int threads)
{
    std::vector<std::unique_ptr<QFile>> probes;
    for (int probe = 0; probe < threads; ++probe) {
        probes.push_back(std::make_unique<QFile>(QProcess::nullDevice()));
        if (!probes.back()->open(QIODevice::ReadOnly))
            return false;
    }
    return true;
}

/// Keeps every thread busy until one has shown that it runs; so each is started now, and none with work.
bool Workers::startThreads()
{
    struct Start
    {
        std::counting_semaphore<> running{0};
        std::latch end{1};
    };
    const int threads = std::max(1, QThread::idealThreadCount());
    if (!hasDescriptorsFor(threads + 2)) // another thread may open some meanwhile
        return false;
    const auto start = std::make_shared<Start>();
    m_pool.setMaxThreadCount(m_pool.activeThreadCount() + threads);
    for (int thread = 0; thread < threads; ++thread) {
        m_pool.start([start] {
            start->running.release();
            start->end.wait();
        });
    }
    const bool someRun = start->running.try_acquire_for(maxWait);
    start->end.count_down();
    return someRun;
}

bool Workers::start(std::function<void()> work)
{
    {
        const std::lock_guard lock(m_mutex);
        m_areRunning = m_areRunning || startThreads();
        if (!m_areRunning)
            return false;
        ++m_unfinished;
    }
    std::function<void()> task = [this, job = std::move(work)]() mutable {
        takenOver();
        job();
        job = nullptr;
        const std::lock_guard lock(m_mutex);
        --m_unfinished;
        m_areIdle.notify_all();
    };
    handedOver();
    m_pool.start(std::move(task));
    return true;
}

bool Workers::wait(std::chrono::milliseconds time)
{
    std::unique_lock lock(m_mutex);
    return m_areIdle.wait_for(lock, time, [this] { return m_unfinished == 0; });
}

/// Never destroyed: its threads may be in work that hangs, and the end of the program must not wait for that.
Workers &workers()
{
    static auto *const workers = new Workers; // as above
    return *workers;
}

} // namespace

bool startOnWorker(std::function<void()> work)
{
    return workers().start(std::move(work));
}

bool waitForWorkers(std::chrono::milliseconds time)
{
    return workers().wait(time);
}

} // namespace ambrel
