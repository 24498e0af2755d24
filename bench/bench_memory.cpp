// Memory after start beside eighty stock widgets, and live with 50 matches and their photos beside an empty window: the
// proportional set size, which shares the pages of libraries among those who use them. To be run on copies of the
// libraries, as the reply server then is, too: it is the client alone that uses the installed ones, and they count
// whole. Usage: LD_LIBRARY_PATH=COPIES bench_memory CLIENT

#include "support/ReplyServer.h"
#include "support/Row.h"
#include "support/Samples.h"

#include <QFile>
#include <chrono>
#include <thread>

using namespace ambrel;
using namespace std::chrono_literals;

namespace {

double proportionalMegabytes(pid_t process)
{
    QFile file(QStringLiteral("/proc/%1/smaps_rollup").arg(process));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no figures for process %d", process);
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("Pss:"))
            return line.mid(4).trimmed().split(' ').first().toDouble() / 1024;
    }
    return 0;
}

/// The median over `time`, once the first second has passed.
double settledMegabytes(const QByteArray &program, const QList<QByteArray> &arguments, std::chrono::milliseconds time)
{
    const ChildProcess child(program, arguments, {"LD_LIBRARY_PATH="});
    std::this_thread::sleep_for(1s);
    std::vector<double> samples;
    constexpr auto interval = 200ms;
    for (auto passed = 0ms; passed < time; passed += interval) {
        std::this_thread::sleep_for(interval);
        samples.push_back(proportionalMegabytes(child.id()));
    }
    return medianOf(samples);
}

void report(const char *what, double limit, double ours, const char *floorName, double floor)
{
    print({.what = what,
           .toReach = "at most " + QByteArray::number(limit) + " x " + floorName,
           .floor = figure(floor, " MiB"),
           .measured = figure(ours, " MiB"),
           .ratio = figure(ours / floor),
           .isReached = ours <= limit * floor});
}

} // namespace

int main(int, char **arguments)
{
    const ReplyServer server(50, 320, 1);
    std::vector<double> empty;
    std::vector<double> widgets;
    std::vector<double> started;
    std::vector<double> live;
    for (int round = 0; round < 3; ++round) {
        empty.push_back(settledMegabytes(siblingProgram("empty-window"), {}, 1s));
        widgets.push_back(settledMegabytes(siblingProgram("eighty-widgets"), {}, 1s));
        started.push_back(settledMegabytes(arguments[1], {}, 1s));
        live.push_back(settledMegabytes(siblingProgram("live-client"), {server.url().toLatin1()}, 7s));
    }
    report("memory after start", 1.1, medianOf(started), "eighty stock widgets", medianOf(widgets));
    report("memory live with 50 matches and 5 photos on screen", 2.2, medianOf(live), "an empty window",
           medianOf(empty));
}
