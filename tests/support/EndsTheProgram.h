#pragma once

#include <QtGlobal>
#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ambrel {

/// True when `action` aborts the process; tried in a child process, which leaves no core file.
template <typename Action>
bool endsTheProgram(Action action)
{
    const pid_t child = fork();
    if (child == 0) {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        std::signal(SIGABRT, SIG_DFL); // without the test library's own report
        const rlimit noCoreFile{0, 0};
        setrlimit(RLIMIT_CORE, &noCoreFile);
        action();
        _exit(0);
    }
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT;
}

} // namespace ambrel
