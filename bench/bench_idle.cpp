// What a live client does while the small reply of the server stays the same: repaints, processor time of all threads,
// and wake-ups of the main thread besides those of the two loops.

#include "support/MainThreadTurns.h"
#include "support/PaintCounter.h"
#include "support/ReplyServer.h"
#include "support/Row.h"
#include "support/SystemClock.h"
#include "support/WholeClient.h"

#include <QEventLoop>
#include <QTimer>

using namespace ambrel;
using namespace std::chrono_literals;

namespace {

/// Wake-ups that follow one another closely count as one: a request, its answer and what comes of it.
int occasionsIn(const std::vector<Turn> &turns)
{
    constexpr double apart = 100; // milliseconds
    int occasions = 0;
    double last = 0;
    for (const Turn &turn : turns) {
        occasions += turn.wokeAt - last > apart;
        last = turn.wokeAt;
    }
    return occasions;
}

void live(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

int main(int argc, char **argv)
{
    const ReplyServer server(5, 200, 1);
    const SignedInSettings settings(server.url());
    AmbrelMacApp application(argc, argv);
    const auto window = application.openWindow();
    goLive(*window);
    live(11s); // two cycles: all photos are shown

    const PaintCounter paints;
    startRecordingTurns();
    constexpr std::chrono::seconds time = 20s;
    const double before = millisecondsOn(CLOCK_PROCESS_CPUTIME_ID);
    live(time);
    const double used = millisecondsOn(CLOCK_PROCESS_CPUTIME_ID) - before; // by all threads
    const double perSecond = used / static_cast<double>(time.count());
    // Every 5 s a cycle, every 2 s a poll, one more of each on the edge, and the end of this measurement.
    constexpr int expected = static_cast<int>(time / 5s + time / 2s) + 3;
    const int occasions = occasionsIn(takeTurns());

    std::printf("idle: %d repaints, %.2f ms a second, %d wake-ups where the loops have up to %d\n", paints.total(),
                perSecond, occasions, expected);
    print({.what = "idle live client, unchanged small reply",
           .toReach = "no repaint, 3 ms of processor a second, no wake-up but the loops'",
           .floor = "two loops: up to " + QByteArray::number(expected) + " wake-ups",
           .measured = QByteArray::number(paints.total()) + " repaints, " + figure(perSecond, " ms") + ", " +
                       QByteArray::number(occasions) + " wake-ups",
           .ratio = "-",
           .isReached = paints.total() == 0 && perSecond <= 3 && occasions <= expected});
}
