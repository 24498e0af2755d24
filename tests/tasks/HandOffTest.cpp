#include "tasks/BackgroundTask.h"
#include "tasks/Worker.h"

#include <QEventLoop>
#include <QTest>
#include <QThread>
#include <atomic>
#include <thread>

using namespace ambrel;

namespace {

struct Refusal
{
};

/// What came home.
struct Arrival
{
    QList<int> values;
    int refusals = 0;
    QThread *thread = nullptr;
};

QCoro::Task<> await(HandOff<int> number, Arrival &arrival)
{
    try {
        const auto value = co_await number;
        arrival.values.append(value);
    } catch (const Refusal &) {
        ++arrival.refusals;
    }
    arrival.thread = QThread::currentThread();
}

void startAwaiting(const HandOff<int> &number, Arrival &arrival)
{
    runDetached(await(number, arrival));
}

} // namespace

class HandOffTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void callsAreRunOnceAndInOrder()
    {
        const auto queue = CallQueue::ofThisThread();
        QCOMPARE(CallQueue::ofThisThread(), queue);
        QList<int> run;
        for (int call = 0; call < 3; ++call)
            queue->post([&run, call] { run.append(call); });
        QVERIFY(run.isEmpty());
        QTRY_COMPARE(run, (QList<int>{0, 1, 2}));
        QVERIFY(!queue->deliver());
    }

    void callsAreDeliveredWhereNoLoopTurns()
    {
        const auto queue = CallQueue::ofThisThread();
        int runs = 0;
        queue->post([&runs] { ++runs; });
        QVERIFY(queue->deliver());
        QCOMPARE(runs, 1);
        QVERIFY(!queue->deliver());
    }

    void callsOfManyThreadsAllArrive()
    {
        constexpr int threads = 8;
        constexpr int calls = 500;
        const auto queue = CallQueue::ofThisThread();
        int sum = 0; // no atomic: the calls are run here
        std::vector<std::jthread> senders;
        for (int thread = 0; thread < threads; ++thread) {
            senders.emplace_back([&sum, queue] {
                for (int call = 0; call < calls; ++call)
                    queue->post([&sum] { ++sum; });
            });
        }
        QTRY_COMPARE(sum, threads * calls);
    }

    void aValueResumesTheWaitingCoroutineAtHome()
    {
        Arrival arrival;
        const HandOff<int> number;
        startAwaiting(number, arrival);
        const std::jthread sender([number] { number.finish(7); });
        QTRY_COMPARE(arrival.values, QList<int>{7});
        QCOMPARE(arrival.thread, QThread::currentThread());
    }

    void aValueIsNeverDeliveredInsideFinish()
    {
        Arrival arrival;
        const HandOff<int> number;
        startAwaiting(number, arrival);
        number.finish(7);
        QVERIFY(arrival.values.isEmpty());
        QTRY_COMPARE(arrival.values, QList<int>{7});
    }

    void aValueMayArriveBeforeItIsAwaited()
    {
        Arrival arrival;
        const HandOff<int> number;
        number.finish(7);
        QTRY_VERIFY(number.await_ready());
        startAwaiting(number, arrival);
        QCOMPARE(arrival.values, QList<int>{7});
    }

    void anExceptionTravelsHome()
    {
        Arrival arrival;
        startAwaiting(runOnWorker([]() -> int { throw Refusal(); }), arrival);
        QTRY_COMPARE(arrival.refusals, 1);
        QVERIFY(arrival.values.isEmpty());
    }

    void aThreadThatHasEndedGetsNothing()
    {
        std::optional<HandOff<int>> number;
        std::thread([&number] {
            const QEventLoop loop;
            number.emplace();
        }).join();
        number->finish(7);
        QVERIFY(!number->await_ready());
    }

    void workRunsOffTheCallingThread()
    {
        Arrival arrival;
        const auto here = std::this_thread::get_id();
        startAwaiting(runOnWorker([here] { return std::this_thread::get_id() == here ? 0 : 1; }), arrival);
        QTRY_COMPARE(arrival.values, QList<int>{1});
    }

    void manyJobsAllEnd()
    {
        constexpr int jobs = 500;
        Arrival arrival;
        for (int job = 0; job < jobs; ++job) {
            const auto text = std::make_shared<std::string>(std::to_string(job));
            startAwaiting(runOnWorker([text] { return std::stoi(*text); }), arrival);
        }
        QTRY_COMPARE(arrival.values.size(), jobs);
        std::sort(arrival.values.begin(), arrival.values.end());
        for (int job = 0; job < jobs; ++job)
            QCOMPARE(arrival.values.at(job), job);
    }

    void aValueIsDestroyedOnTheWorker()
    {
        std::atomic<bool> destroyedElsewhere = false;
        const auto here = std::this_thread::get_id();
        const auto note = [&destroyedElsewhere, here](const int *value) {
            delete value;
            destroyedElsewhere = std::this_thread::get_id() != here;
        };
        destroyOnWorker(std::unique_ptr<const int, decltype(note)>(new const int(7), note));
        QTRY_VERIFY(destroyedElsewhere);
    }
};

QTEST_GUILESS_MAIN(HandOffTest)
#include "HandOffTest.moc"
