#include "tasks/BackgroundTask.h"
#include "tasks/Sleep.h"

#include <QTest>
#include <memory>

using namespace ambrel;
using namespace std::chrono_literals;

namespace {

/// What a loop has done so far.
struct Log
{
    int rounds = 0;
    bool ended = false;
};

QCoro::Task<> loop(std::shared_ptr<Log> log, std::chrono::milliseconds pause, std::stop_token stop)
{
    while (!stop.stop_requested()) {
        ++log->rounds;
        co_await sleepFor(pause, stop);
    }
    log->ended = true;
}

BackgroundTask startLoop(const std::shared_ptr<Log> &log, std::chrono::milliseconds pause)
{
    return BackgroundTask([&log, pause](std::stop_token stop) { return loop(log, pause, std::move(stop)); });
}

} // namespace

class BackgroundTaskTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itStartsAtOnce()
    {
        const auto log = std::make_shared<Log>();
        BackgroundTask task = startLoop(log, 1h);
        QCOMPARE(log->rounds, 1);
        task.cancel();
        QTRY_VERIFY(log->ended);
    }

    void itRunsUntilItIsCancelled()
    {
        const auto log = std::make_shared<Log>();
        BackgroundTask task = startLoop(log, 1ms);
        QTRY_VERIFY(log->rounds > 10);
        task.cancel();
        const int rounds = log->rounds;
        QTRY_VERIFY(log->ended);
        QCOMPARE(log->rounds, rounds);
    }

    void aCancelEndsTheSleepUnderWay()
    {
        const auto log = std::make_shared<Log>();
        BackgroundTask task = startLoop(log, 24h);
        task.cancel();
        task.cancel();
        QTRY_VERIFY(log->ended);
        QCOMPARE(log->rounds, 1);
    }

    void copiesCancelTheSameTask()
    {
        const auto log = std::make_shared<Log>();
        const BackgroundTask task = startLoop(log, 24h);
        BackgroundTask copy = task;
        copy.cancel();
        QTRY_VERIFY(log->ended);
    }

    void droppingTheHandleDoesNotStopIt()
    {
        const auto log = std::make_shared<Log>();
        auto task = std::make_unique<BackgroundTask>(startLoop(log, 1ms));
        BackgroundTask kept = *task;
        task.reset();
        QTRY_VERIFY(log->rounds > 5);
        QVERIFY(!log->ended);
        kept.cancel();
        QTRY_VERIFY(log->ended);
    }

    void cancellingAnEndedTaskDoesNothing()
    {
        const auto log = std::make_shared<Log>();
        BackgroundTask task = startLoop(log, 1ms);
        task.cancel();
        QTRY_VERIFY(log->ended);
        QCOMPARE(log.use_count(), 1); // the coroutine is gone
        task.cancel();
    }

    void cancellingOneTaskLeavesAnotherAlone()
    {
        const auto first = std::make_shared<Log>();
        const auto second = std::make_shared<Log>();
        BackgroundTask stopped = startLoop(first, 1ms);
        BackgroundTask running = startLoop(second, 1ms);
        stopped.cancel();
        QTRY_VERIFY(first->ended);
        const int rounds = second->rounds;
        QTRY_VERIFY(second->rounds > rounds + 3);
        running.cancel();
        QTRY_VERIFY(second->ended);
    }
};

QTEST_GUILESS_MAIN(BackgroundTaskTest)
#include "BackgroundTaskTest.moc"
