// What one live cycle costs the main thread as the list of matches grows: it should be what is on screen.

#include "support/Interleaved.h"
#include "support/LiveWindow.h"
#include "support/ReplyServer.h"
#include "support/Row.h"

#include <QApplication>
#include <algorithm>
#include <array>
#include <iterator>

using namespace ambrel;
using namespace std::chrono_literals;

namespace {

constexpr std::array sizes{10, 100, 1000, 10'000};

/// Milliseconds of processor time that each of a few cycles takes on the main thread.
std::vector<double> cycleCosts(int matches)
{
    const ReplyServer server(matches, 0, 2);
    LiveWindow client(server.url(), {.livePause = 20ms, .seeMePause = 1h});
    client.runCycles(3);
    std::vector<double> costs;
    for (int i = 0; i < 15; ++i)
        costs.push_back(secondsFor([&] { client.runCycles(1); }) * 1e3);
    return costs;
}

/// The median cost for each of the sizes, all of them in turn so that they meet the same weather.
std::array<double, sizes.size()> medianCosts()
{
    std::array<std::vector<double>, sizes.size()> costs;
    for (int round = 0; round < 3; ++round) {
        for (std::size_t i = 0; i < sizes.size(); ++i)
            std::ranges::copy(cycleCosts(sizes[i]), std::back_inserter(costs[i]));
    }
    std::array<double, sizes.size()> medians{};
    std::ranges::transform(costs, medians.begin(), medianOf);
    return medians;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const auto medians = medianCosts();
    for (std::size_t i = 0; i < sizes.size(); ++i)
        std::printf("growth: %d matches %.2f ms a cycle\n", sizes[i], medians[i]);
    const double ratio = medians.back() / medians.front();
    print({.what = "main-thread cost of a cycle, 10 to 10,000 matches",
           .toReach = "flat (at most 1.25 x)",
           .floor = "10 matches " + figure(medians.front(), " ms"),
           .measured = figure(medians.back(), " ms"),
           .ratio = figure(ratio),
           .isReached = ratio <= 1.25});
}
