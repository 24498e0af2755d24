#include "tasks/Sleep.h"
#include "tasks/BackgroundTask.h"

#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

using namespace ambrel;
using namespace std::chrono_literals;

namespace {

/// What one sleep came to.
struct Nap
{
    int wakings = 0;
    bool whole = false;
};

QCoro::Task<> nap(std::chrono::milliseconds duration, std::stop_token stop, Nap &result)
{
    const auto whole = co_await sleepFor(duration, stop);
    result.whole = whole;
    ++result.wakings;
}

void start(std::chrono::milliseconds duration, const std::stop_token &stop, Nap &result)
{
    runDetached(nap(duration, stop, result));
}

} // namespace

class SleepTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSleepLastsAsLongAsItShould()
    {
        Nap result;
        QElapsedTimer clock;
        clock.start();
        start(120ms, {}, result);
        QCOMPARE(result.wakings, 0);
        QTRY_COMPARE(result.wakings, 1);
        QVERIFY(result.whole);
        QVERIFY2(clock.elapsed() >= 119, qPrintable(QString::number(clock.elapsed())));
    }

    void aStopEndsTheSleepNow()
    {
        Nap result;
        std::stop_source stop;
        QElapsedTimer clock;
        clock.start();
        start(1h, stop.get_token(), result);
        stop.request_stop();
        QCOMPARE(result.wakings, 0); // never inside the request
        QTRY_COMPARE(result.wakings, 1);
        QVERIFY(!result.whole);
        QVERIFY(clock.elapsed() < 5000);
    }

    void aStopThatCameBeforeEndsTheSleepAtOnce()
    {
        Nap result;
        std::stop_source stop;
        stop.request_stop();
        start(1h, stop.get_token(), result);
        QTRY_COMPARE(result.wakings, 1);
        QVERIFY(!result.whole);
    }

    void aStopThatComesAfterwardsDoesNothing()
    {
        Nap result;
        std::stop_source stop;
        start(1ms, stop.get_token(), result);
        QTRY_COMPARE(result.wakings, 1);
        stop.request_stop();
        QCoreApplication::processEvents();
        QCOMPARE(result.wakings, 1);
        QVERIFY(result.whole);
    }

    void aStopInTheMomentOfWakingWakesOnce()
    {
        constexpr int races = 200;
        std::vector<Nap> results(races);
        std::vector<std::stop_source> stops(races);
        for (std::size_t race = 0; race < races; ++race) {
            // Both are due in the same millisecond, in either order.
            const auto stopper = [&stops, race] { stops[race].request_stop(); };
            if (race % 2 == 0)
                QTimer::singleShot(20ms, Qt::PreciseTimer, this, stopper);
            start(20ms, stops[race].get_token(), results[race]);
            if (race % 2 == 1)
                QTimer::singleShot(20ms, Qt::PreciseTimer, this, stopper);
        }
        const auto allAwake = [&results] {
            return std::all_of(results.begin(), results.end(), [](const Nap &result) { return result.wakings > 0; });
        };
        QTRY_VERIFY(allAwake());
        QCoreApplication::processEvents();
        for (const Nap &result : results)
            QCOMPARE(result.wakings, 1);
    }

    void everySleepOfOneStopEnds()
    {
        std::vector<Nap> results(5);
        std::stop_source stop;
        for (Nap &result : results)
            start(1h, stop.get_token(), result);
        stop.request_stop();
        for (const Nap &result : results)
            QTRY_COMPARE(result.wakings, 1);
    }
};

QTEST_GUILESS_MAIN(SleepTest)
#include "SleepTest.moc"
