#pragma once

#include <QStringList>
#include <cstdio>
#include <sys/types.h>

namespace ambrel {

/// A child process of a test. It is started through the C library, because QProcess lets a child begin in its parent's
/// own memory: the thread checker takes the child's calls there for the parent's, and is blind from then on. All calls
/// block.
class ChildProcess
{
public:
    /// Starts a program that is found along PATH. What it prints can be read here.
    ChildProcess(const QString &program, const QStringList &arguments);
    /// Tells it to end, if it still runs, and waits for that.
    ~ChildProcess();
    Q_DISABLE_COPY_MOVE(ChildProcess)

    bool isStarted() const { return m_id > 0; }
    /// The next line that it prints, with its line break; empty when there is no more to come.
    QByteArray readLine();

    /// The exit code of a program that runs to its end; -1 when it cannot be started or is killed.
    static int run(const QString &program, const QStringList &arguments);
    /// What a program prints until it ends.
    static QByteArray outputOf(const QString &program, const QStringList &arguments);

private:
    int waitForEnd();

    pid_t m_id = -1;
    std::FILE *m_output = nullptr;
};

} // namespace ambrel
