#include "local-server/OpenConnections.h"

#include <QTcpSocket>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif

namespace ambrel::local {

namespace {

/// As many as are useful, and fewer where the process may not open so many files.
qsizetype maxConnections()
{
    constexpr qsizetype useful = 200;
#ifdef Q_OS_UNIX
    constexpr rlim_t reserved = 32; // for everything else in the process
    rlimit files{};
    if (getrlimit(RLIMIT_NOFILE, &files) == 0 && files.rlim_cur < useful + reserved)
        return files.rlim_cur > reserved ? qsizetype(files.rlim_cur - reserved) : 1;
#endif
    return useful;
}

} // namespace

void OpenConnections::add(QTcpSocket *socket)
{
    static const qsizetype most = maxConnections();
    if (m_sockets.size() >= most)
        m_sockets.takeFirst()->abort();
    m_sockets.append(socket);
}

void OpenConnections::hear(QTcpSocket *socket)
{
    if (m_sockets.removeOne(socket))
        m_sockets.append(socket);
}

} // namespace ambrel::local
