#include "support/ChildProcess.h"

#include <QList>
#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ambrel {

ChildProcess::ChildProcess(const QString &program, const QStringList &arguments)
{
    QByteArrayList texts{program.toLocal8Bit()};
    for (const QString &argument : arguments)
        texts << argument.toLocal8Bit();
    QList<char *> pointers;
    for (QByteArray &text : texts)
        pointers << text.data();
    pointers << nullptr;

    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0)
        return;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    if (posix_spawnp(&m_id, pointers.first(), &actions, nullptr, pointers.data(), environ) != 0)
        m_id = -1;
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    m_output = fdopen(ends[0], "r");
}

ChildProcess::~ChildProcess()
{
    if (m_id > 0) {
        kill(m_id, SIGTERM);
        waitForEnd();
    }
    if (m_output)
        std::fclose(m_output);
}

QByteArray ChildProcess::readLine()
{
    char *line = nullptr;
    std::size_t room = 0;
    const ssize_t length = m_output ? getline(&line, &room, m_output) : -1;
    QByteArray read(line, std::max<ssize_t>(0, length));
    std::free(line);
    return read;
}

int ChildProcess::run(const QString &program, const QStringList &arguments)
{
    ChildProcess process(program, arguments);
    while (!process.readLine().isEmpty()) {
    }
    return process.isStarted() ? process.waitForEnd() : -1;
}

QByteArray ChildProcess::outputOf(const QString &program, const QStringList &arguments)
{
    ChildProcess process(program, arguments);
    QByteArray output;
    for (QByteArray line = process.readLine(); !line.isEmpty(); line = process.readLine())
        output += line;
    if (process.isStarted())
        process.waitForEnd();
    return output;
}

int ChildProcess::waitForEnd()
{
    int status = 0;
    const bool isOver = waitpid(m_id, &status, 0) == m_id;
    m_id = -1;
    return isOver && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace ambrel
