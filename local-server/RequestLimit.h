#pragma once

#include <QObject>
#include <QTcpSocket>
#include <QTimer>

namespace ambrel::local {

/// Watches one connection and cuts off a request that is larger than any client would send. The HTTP server
/// collects a whole request in memory before it shows it to anybody, so this looks at the socket first.
class RequestLimit : public QObject
{
    Q_OBJECT

public:
    static constexpr qint64 mostBytes = 16LL * 1024 * 1024;

    /// Must be made before anybody else listens to the socket, which owns it from then on.
    explicit RequestLimit(QTcpSocket *socket);
    /// The limit of this connection.
    static RequestLimit *of(const QTcpSocket *socket);
    /// A request has been answered; counting starts again.
    void startOver() { m_received = 0; }

private:
    void count();
    void refuse();

    QTcpSocket *m_socket;
    QTimer m_farewell;
    qint64 m_received = 0;
};

} // namespace ambrel::local
