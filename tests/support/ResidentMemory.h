#pragma once

#include <QByteArray>
#include <QFile>

namespace ambrel {

/// A figure of this process from the kernel's own account, in bytes: "VmRSS" for its resident memory, "VmHWM" for the
/// peak of that, "VmSize" for its address space.
inline qint64 memoryFigure(const QByteArray &name)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        qFatal("no account of this process");
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(name + ':'))
            return line.mid(name.size() + 1).trimmed().split(' ').first().toLongLong() * 1024;
    }
    qFatal("no such figure: %s", name.constData());
}

/// Lets the peak of the resident memory begin anew.
inline void forgetMemoryPeak()
{
    QFile reset(QStringLiteral("/proc/self/clear_refs"));
    if (!reset.open(QIODevice::WriteOnly) || reset.write("5") != 1)
        qFatal("the memory peak cannot be reset");
}

} // namespace ambrel
