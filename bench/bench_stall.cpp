// The longest stall of the main thread in a live cycle with the window visible, beside a naive client on the same
// server. Every cycle brings changed people, so that every photo on screen is decoded anew.

#include "support/LiveWindow.h"
#include "support/MainThreadTurns.h"
#include "support/NaiveClient.h"
#include "support/ReplyServer.h"
#include "support/Row.h"
#include "support/Samples.h"

#include <QApplication>

using namespace ambrel;
using namespace std::chrono_literals;

namespace {

struct Stalls
{
    std::vector<double> longest; ///< of each cycle, milliseconds
    std::vector<double> longestOnTheWall;
};

template <typename Cycle>
Stalls stallsOf(int cycles, Cycle runCycle)
{
    for (int i = 0; i < 2; ++i)
        runCycle(); // the first builds the cards and starts the threads
    startRecordingTurns();
    Stalls stalls;
    for (int i = 0; i < cycles; ++i) {
        runCycle();
        Turn longest;
        for (const Turn &turn : takeTurns()) {
            longest.milliseconds = std::max(longest.milliseconds, turn.milliseconds);
            longest.wallMilliseconds = std::max(longest.wallMilliseconds, turn.wallMilliseconds);
        }
        stalls.longest.push_back(longest.milliseconds);
        stalls.longestOnTheWall.push_back(longest.wallMilliseconds);
    }
    return stalls;
}

void compare(const char *name, int matches, int photoWidth, double limit)
{
    constexpr int cycles = 20;
    const ReplyServer server(matches, photoWidth, 2);
    Stalls naive;
    {
        NaiveClient client(server.url());
        client.show();
        naive = stallsOf(cycles / 4, [&] { client.runCycle(); });
    }
    LiveWindow client(server.url(), {.livePause = 50ms, .seeMePause = 50ms});
    const Stalls ours = stallsOf(cycles, [&] { client.runCycles(1); });

    const double median = medianOf(ours.longest);
    const double largest = largestOf(ours.longest);
    const double rival = medianOf(naive.longest);
    std::printf("stall, %s: median %.2f ms, largest %.2f ms (on the wall clock %.2f and %.2f); naive client %.1f ms\n",
                name, median, largest, medianOf(ours.longestOnTheWall), largestOf(ours.longestOnTheWall), rival);
    print({.what = QByteArray("longest main-thread stall in a live cycle, ") + name,
           .toReach = "median " + QByteArray::number(limit) + " ms, never above 8 ms",
           .floor = "naive client " + figure(rival, " ms"),
           .measured = figure(median, " ms") + ", largest " + figure(largest, " ms"),
           .ratio = "1/" + QByteArray::number(rival / median, 'f', 0),
           .isReached = median <= limit && largest <= 8});
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    compare("30 MB", 20, 2570, 1);
    compare("160 MB", 100, 2650, 2);
    compare("10,000 matches without photos", 10'000, 0, 3);
}
