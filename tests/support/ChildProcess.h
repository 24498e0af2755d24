#pragma once

#include <QByteArray>
#include <QList>
#include <sys/types.h>

namespace ambrel {

/// A program started by a test or a benchmark; it is ended and awaited when this goes. It is started through the C
/// library, because QProcess lets a child begin in its parent's own memory: the thread checker takes the child's calls
/// there for the parent's, and is blind from then on. All calls block.
class ChildProcess
{
public:
    /// Starts `program`, found along PATH unless it is a path itself. `environment` holds additions and replacements of
    /// the form "NAME=value"; `inherited` is a descriptor that the child gets, too. Ends this program when that fails.
    explicit ChildProcess(const QByteArray &program, const QList<QByteArray> &arguments = {},
                          const QList<QByteArray> &environment = {}, int inherited = -1);
    ~ChildProcess();
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    pid_t id() const { return m_id; }
    /// The next line that the child prints, without its end; ends this program when there is none.
    QByteArray readLine();
    /// Waits for the child to end by itself; its exit code.
    int wait();

    /// The exit code of a program that runs to its end; -1 when it is killed.
    static int run(const QByteArray &program, const QList<QByteArray> &arguments);
    /// What a program prints until it ends.
    static QByteArray outputOf(const QByteArray &program, const QList<QByteArray> &arguments);

private:
    QByteArray readAll();

    pid_t m_id = -1;
    int m_input = -1;  ///< the child's standard input ends with this object
    int m_output = -1; ///< what the child prints
};

} // namespace ambrel
