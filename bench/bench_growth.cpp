// What one live cycle costs the main thread as the list of matches grows: it should be what is on screen.

#include "support/Interleaved.h"
#include "support/LiveWindow.h"
#include "support/ReplyServer.h"
#include "support/Row.h"

#include <QApplication>

using namespace ambrel;
using namespace std::chrono_literals;

namespace {

/// Milliseconds of processor time that one cycle takes on the main thread.
double cycleCost(int matches)
{
    const ReplyServer server(matches, 0, 2);
    LiveWindow client(server.url(), {.livePause = 20ms, .seeMePause = 1h});
    client.runCycles(3);
    std::vector<double> costs;
    for (int i = 0; i < 15; ++i)
        costs.push_back(secondsFor([&] { client.runCycles(1); }) * 1e3);
    return medianOf(costs);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const double ten = cycleCost(10);
    double largest = ten;
    for (const int matches : {100, 1000, 10'000}) {
        largest = cycleCost(matches);
        std::printf("growth: %d matches %.2f ms a cycle, ten %.2f ms\n", matches, largest, ten);
    }
    print({.what = "main-thread cost of a cycle, 10 to 10,000 matches",
           .toReach = "flat (at most 1.25 x)",
           .floor = "10 matches " + figure(ten, " ms"),
           .measured = figure(largest, " ms"),
           .ratio = figure(largest / ten),
           .isReached = largest <= 1.25 * ten});
}
