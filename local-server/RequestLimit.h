#pragma once

#include "local-server/OpenConnections.h"

#include <QObject>
#include <QTcpSocket>
#include <QTimer>
#include <memory>

namespace ambrel::local {

/// Watches one connection and cuts off what no client would send: a request that is too large, and requests whose
/// answers nobody reads. The HTTP server collects a whole request in memory before it shows it to anybody, so this
/// looks at the socket first.
class RequestLimit : public QObject
{
    Q_OBJECT

public:
    static constexpr qint64 maxRequestBytes = 16LL * 1024 * 1024;
    /// A client that asks for more while it has left so many bytes of earlier answers unread is cut off.
    static constexpr qint64 maxUnreadBytes = 4LL * 1024 * 1024;

    /// Must be made before anybody else listens to the socket, which owns it from then on.
    RequestLimit(QTcpSocket *socket, std::shared_ptr<OpenConnections> connections);
    ~RequestLimit() override;
    /// The limit of this connection.
    static RequestLimit *of(const QTcpSocket *socket);
    /// A request has been answered; counting starts again.
    void startOver() { count(-m_received); }

private:
    void hear();
    void count(qint64 bytes);
    /// From here on the HTTP server hears nothing more of this connection.
    void silence();
    void refuse(const QByteArray &status, const QString &text);

    QTcpSocket *m_socket;
    std::shared_ptr<OpenConnections> m_connections;
    QTimer m_farewell;
    qint64 m_received = 0;
};

} // namespace ambrel::local
