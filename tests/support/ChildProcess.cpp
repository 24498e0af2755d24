#include "support/ChildProcess.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace ambrel {

namespace {

std::vector<char *> pointersTo(const QList<QByteArray> &texts)
{
    std::vector<char *> pointers;
    for (const QByteArray &text : texts)
        pointers.push_back(const_cast<char *>(text.constData()));
    pointers.push_back(nullptr);
    return pointers;
}

/// Only the ends that the child is meant to have cross over.
void makePipe(int &readEnd, int &writeEnd)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        qFatal("no pipe");
    readEnd = ends[0];
    writeEnd = ends[1];
}

} // namespace

ChildProcess::ChildProcess(const QByteArray &program, const QList<QByteArray> &arguments,
                           const QList<QByteArray> &environment, int inherited)
{
    int childInput = -1;
    int childOutput = -1;
    makePipe(childInput, m_input);
    makePipe(m_output, childOutput);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, childInput, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, childOutput, STDOUT_FILENO);
    if (inherited >= 0)
        posix_spawn_file_actions_adddup2(&actions, inherited, inherited); // takes the close-on-exec mark off

    QList<QByteArray> variables = environment;
    for (char **variable = environ; *variable; ++variable) {
        const QByteArray inherits(*variable);
        const QByteArray name = inherits.left(inherits.indexOf('=') + 1);
        const bool isReplaced = std::any_of(environment.begin(), environment.end(),
                                            [&name](const QByteArray &given) { return given.startsWith(name); });
        if (!isReplaced)
            variables += inherits;
    }
    const QList<QByteArray> words = QList<QByteArray>{program} + arguments;
    const int error = posix_spawnp(&m_id, program.constData(), &actions, nullptr, pointersTo(words).data(),
                                   pointersTo(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    ::close(childInput);
    ::close(childOutput);
    if (error != 0)
        qFatal("cannot start %s", program.constData());
}

ChildProcess::~ChildProcess()
{
    ::close(m_input);
    if (m_id > 0)
        kill(m_id, SIGTERM);
    wait();
    ::close(m_output);
}

QByteArray ChildProcess::readLine()
{
    QByteArray line;
    char letter = 0;
    while (read(m_output, &letter, 1) == 1) {
        if (letter == '\n')
            return line;
        line += letter;
    }
    qFatal("a child process ended early");
}

int ChildProcess::wait()
{
    int status = 0;
    if (m_id > 0)
        waitpid(std::exchange(m_id, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int ChildProcess::run(const QByteArray &program, const QList<QByteArray> &arguments)
{
    ChildProcess process(program, arguments);
    process.readAll();
    return process.wait();
}

QByteArray ChildProcess::outputOf(const QByteArray &program, const QList<QByteArray> &arguments)
{
    ChildProcess process(program, arguments);
    const QByteArray output = process.readAll();
    process.wait();
    return output;
}

QByteArray ChildProcess::readAll()
{
    QByteArray all;
    char part[4096];
    for (ssize_t length; (length = read(m_output, part, sizeof part)) > 0;)
        all.append(part, length);
    return all;
}

} // namespace ambrel
