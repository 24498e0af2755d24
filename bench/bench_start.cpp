// From exec to the first picture that the window hands to the display server, beside an empty window of the same
// toolkit and a window of eighty stock widgets, started in turn. Settings and libraries are warm; there is no window
// manager. Usage: bench_start CLIENT

#include "support/ChildProcess.h"
#include "support/Row.h"
#include "support/Samples.h"
#include "support/SiblingProgram.h"
#include "support/ThreadClock.h"

#include <fcntl.h>
#include <unistd.h>

using namespace ambrel;

namespace {

struct Start
{
    double milliseconds; ///< without the time in which other programs had the processor
    double wallMilliseconds;
    double processorMilliseconds; ///< of all threads
};

Start startOnce(const QByteArray &program)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        qFatal("no pipe");
    const double begin = ThreadClock::wallMilliseconds();
    ChildProcess child(
        program, {},
        {"LD_PRELOAD=" + siblingProgram("first-picture.so"), "AMBREL_FIRST_PICTURE=" + QByteArray::number(ends[1])},
        ends[1]);
    ::close(ends[1]);
    double report[3];
    if (read(ends[0], report, sizeof report) != sizeof report)
        qFatal("%s showed nothing", program.constData());
    ::close(ends[0]);
    child.wait();
    const double wall = report[0] - begin;
    return {wall - report[1], wall, report[2]};
}

} // namespace

int main(int, char **arguments)
{
    const QByteArray programs[] = {arguments[1], siblingProgram("empty-window"), siblingProgram("eighty-widgets")};
    std::vector<double> times[3];
    std::vector<double> walls[3];
    std::vector<double> processor[3];
    constexpr int rounds = 31;
    for (int round = 0; round <= rounds; ++round) {
        for (int i = 0; i < 3; ++i) {
            const Start start = startOnce(programs[i]);
            if (round == 0)
                continue; // warms up
            times[i].push_back(start.milliseconds);
            walls[i].push_back(start.wallMilliseconds);
            processor[i].push_back(start.processorMilliseconds);
        }
    }
    const auto ratio = [](const std::vector<double>(&values)[3], int program) {
        return medianOf(values[program]) / medianOf(values[1]);
    };
    // The row is held against the widgets: on a busy machine the time of an empty window jumps.
    const auto overWidgets = [](const std::vector<double>(&values)[3]) {
        return medianOf(values[0]) / medianOf(values[2]);
    };
    const auto report = [&](const char *clock, const std::vector<double>(&values)[3]) {
        std::printf("start, %s: %.1f ms, empty window %.1f ms, ratio %.2f; eighty widgets %.1f ms, ratio %.2f\n", clock,
                    medianOf(values[0]), medianOf(values[1]), ratio(values, 0), medianOf(values[2]), ratio(values, 2));
    };
    report("wall clock", walls);
    report("without waiting for a processor", times);
    report("processor time", processor);
    print({.what = "start to first painted window",
           .toReach = "at most 1.1 x eighty stock widgets",
           .floor = figure(medianOf(times[2]), " ms") + " (processor " + figure(medianOf(processor[2]), " ms") + ")",
           .measured = figure(medianOf(times[0]), " ms") + " (processor " + figure(medianOf(processor[0]), " ms") + ")",
           .ratio = figure(overWidgets(times)) + " (processor " + figure(overWidgets(processor)) + ")",
           .isReached = overWidgets(times) <= 1.1});
}
