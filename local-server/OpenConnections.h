#pragma once

#include <QList>
#include <QtGlobal>

class QTcpSocket;

namespace ambrel::local {

/// The open connections and what their unfinished requests hold together. One thread.
class OpenConnections
{
public:
    /// How many bytes the unfinished requests of all connections may hold together.
    static constexpr qint64 maxReceivedBytes = 64LL * 1024 * 1024;

    /// Takes in a new connection. When there are too many, the one that has been silent for longest is closed.
    void add(QTcpSocket *socket);
    void remove(QTcpSocket *socket) { m_sockets.removeOne(socket); }
    /// Something has arrived on this connection.
    void hear(QTcpSocket *socket);
    /// The connection on which something arrived last: the one whose request is handled now.
    QTcpSocket *heardLast() const { return m_sockets.constLast(); }

    void addReceived(qint64 bytes) { m_received += bytes; }
    bool isFull() const { return m_received > maxReceivedBytes; }

private:
    QList<QTcpSocket *> m_sockets; // the one that was heard last at the end
    qint64 m_received = 0;
};

} // namespace ambrel::local
