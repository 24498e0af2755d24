#pragma once

#include <QByteArray>
#include <unistd.h>

namespace ambrel {

/// The path of a program that stands beside the running one.
inline QByteArray siblingProgram(const char *name)
{
    char path[4096];
    const auto length = readlink("/proc/self/exe", path, sizeof path);
    const QByteArray own(path, length);
    return own.left(own.lastIndexOf('/') + 1) + name;
}

} // namespace ambrel
