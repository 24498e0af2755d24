#include "local-server/RequestLimit.h"

#include "local-server/Routes.h"

namespace ambrel::local {

RequestLimit::RequestLimit(QTcpSocket *socket) : QObject(socket), m_socket(socket)
{
    connect(socket, &QTcpSocket::readyRead, this, &RequestLimit::count);
}

RequestLimit *RequestLimit::of(const QTcpSocket *socket)
{
    return socket->findChild<RequestLimit *>(QString(), Qt::FindDirectChildrenOnly);
}

void RequestLimit::count()
{
    m_received += m_socket->bytesAvailable();
    if (m_received > mostBytes)
        refuse();
}

void RequestLimit::refuse()
{
    // From here on the HTTP server hears nothing more of this connection.
    disconnect(m_socket, &QTcpSocket::readyRead, nullptr, nullptr);
    if (m_socket->isTransactionStarted())
        m_socket->commitTransaction();
    m_socket->readAll();

    const QByteArray body = errorBody(QStringLiteral("The request is too large."));
    m_socket->write("HTTP/1.1 413 Payload Too Large\r\nContent-Type: application/json\r\nConnection: close\r\n"
                    "Content-Length: " +
                    QByteArray::number(body.size()) + "\r\n\r\n" + body);

    // Closing while bytes still arrive would reset the connection and take the answer away from the client.
    connect(m_socket, &QTcpSocket::readyRead, m_socket, [socket = m_socket] { socket->readAll(); });
    constexpr std::chrono::seconds timeToReadTheAnswer(2);
    connect(&m_farewell, &QTimer::timeout, m_socket, &QTcpSocket::abort);
    m_farewell.setSingleShot(true);
    m_farewell.start(timeToReadTheAnswer);
}

} // namespace ambrel::local
