#include "toolkit/EndingSignals.h"

#include <QCoreApplication>

#if defined(Q_OS_UNIX)
#include <QSocketNotifier>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace ambrel {

#if defined(Q_OS_UNIX)

namespace {

std::array<int, 2> pipeEnds{-1, -1};

extern "C" void noteSignal(int)
{
    const char note = 0;
    [[maybe_unused]] const auto written = write(pipeEnds[1], &note, 1);
}

} // namespace

void quitOnEndingSignals()
{
    if (pipe(pipeEnds.data()) != 0)
        return; // ended the hard way
    for (const int end : pipeEnds)
        fcntl(end, F_SETFD, FD_CLOEXEC);
    auto *const application = QCoreApplication::instance();
    const auto *const notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, application); // owned by it
    QObject::connect(notifier, &QSocketNotifier::activated, application, &QCoreApplication::quit);
    struct sigaction action
    {
    };
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    for (const int signal : {SIGHUP, SIGINT, SIGTERM})
        sigaction(signal, &action, nullptr);
}

#else

void quitOnEndingSignals() {}

#endif

} // namespace ambrel
