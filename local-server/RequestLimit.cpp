#include "local-server/RequestLimit.h"

#include "local-server/Routes.h"

namespace ambrel::local {

RequestLimit::RequestLimit(QTcpSocket *socket, std::shared_ptr<OpenConnections> connections)
    : QObject(socket), m_socket(socket), m_connections(std::move(connections))
{
    m_connections->add(socket);
    connect(socket, &QTcpSocket::readyRead, this, &RequestLimit::hear);
}

RequestLimit::~RequestLimit()
{
    startOver();
    m_connections->remove(m_socket);
}

RequestLimit *RequestLimit::of(const QTcpSocket *socket)
{
    return socket->findChild<RequestLimit *>(QString(), Qt::FindDirectChildrenOnly);
}

void RequestLimit::hear()
{
    m_connections->hear(m_socket);
    count(m_socket->bytesAvailable());
    if (m_socket->bytesToWrite() > maxUnreadBytes) {
        silence();
        m_socket->abort();
    } else if (m_received > maxRequestBytes) {
        refuse("413 Payload Too Large", QStringLiteral("The request is too large."));
    } else if (m_connections->isFull()) {
        refuse("503 Service Unavailable", QStringLiteral("The server is busy. Try again later."));
    }
}

void RequestLimit::count(qint64 bytes)
{
    m_received += bytes;
    m_connections->addReceived(bytes);
}

void RequestLimit::silence()
{
    disconnect(m_socket, &QTcpSocket::readyRead, nullptr, nullptr);
    if (m_socket->isTransactionStarted())
        m_socket->commitTransaction();
    m_socket->readAll();
    startOver();
}

void RequestLimit::refuse(const QByteArray &status, const QString &text)
{
    silence();
    const QByteArray body = errorBody(text);
    m_socket->write("HTTP/1.1 " + status +
                    "\r\nContent-Type: application/json\r\nConnection: close\r\n"
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
