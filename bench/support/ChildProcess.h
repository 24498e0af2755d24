#pragma once

#include <QByteArray>
#include <QList>
#include <cstdlib>
#include <sys/types.h>

namespace ambrel {

/// A program started by a benchmark; it is ended and awaited when this goes.
class ChildProcess
{
public:
    /// Starts `program`. `environment` holds additions of the form "NAME=value"; `inherited` is a descriptor that the
    /// child gets, too.
    explicit ChildProcess(const QByteArray &program, const QList<QByteArray> &arguments = {},
                          const QList<QByteArray> &environment = {}, int inherited = -1);
    ~ChildProcess();
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    pid_t id() const { return m_id; }
    /// The next line that the child prints, without its end; ends the benchmark when there is none.
    QByteArray readLine();
    /// Waits for the child to end by itself; its exit code.
    int wait();

private:
    pid_t m_id = -1;
    int m_input = -1;  ///< the child's standard input ends with this object
    int m_output = -1; ///< what the child prints
};

/// The path of a program that stands beside the running one.
QByteArray siblingProgram(const char *name);

} // namespace ambrel
