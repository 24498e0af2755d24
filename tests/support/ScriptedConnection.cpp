#include "support/ScriptedConnection.h"

#include <openssl/err.h>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace ambrel {

QByteArray ReceivedRequest::header(const QByteArray &name) const
{
    for (const auto &[key, value] : headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0)
            return value;
    }
    return {};
}

ScriptedConnection::ScriptedConnection(int socket, SSL_CTX *tls) : m_socket(socket)
{
    if (tls) {
        m_tls = SSL_new(tls);
        SSL_set_fd(m_tls, socket);
    }
}

ScriptedConnection::~ScriptedConnection()
{
    SSL_free(m_tls);
    close();
}

bool ScriptedConnection::handshake()
{
    const bool done = !m_tls || SSL_accept(m_tls) == 1;
    ERR_clear_error();
    return done;
}

bool ScriptedConnection::readMore()
{
    char buffer[65536];
    const auto count = m_tls ? SSL_read(m_tls, buffer, sizeof buffer) : recv(m_socket, buffer, sizeof buffer, 0);
    ERR_clear_error();
    if (count <= 0)
        return false;
    m_unread.append(buffer, static_cast<qsizetype>(count));
    return true;
}

std::optional<ReceivedRequest> ScriptedConnection::readRequest()
{
    qsizetype headEnd = -1;
    while ((headEnd = m_unread.indexOf("\r\n\r\n")) < 0) {
        if (!readMore())
            return std::nullopt;
    }
    const QList<QByteArray> lines = m_unread.left(headEnd).replace("\r\n", "\n").split('\n');
    m_unread.remove(0, headEnd + 4);

    ReceivedRequest request;
    const QList<QByteArray> words = lines.first().split(' ');
    request.method = words.value(0);
    request.target = words.value(1);
    request.path = request.target.split('?').first();
    for (const QByteArray &line : lines.sliced(1)) {
        const qsizetype colon = line.indexOf(':');
        request.headers.append({line.left(colon), line.mid(colon + 1).trimmed()});
    }
    const qsizetype length = request.header("Content-Length").toLongLong();
    while (m_unread.size() < length) {
        if (!readMore())
            return std::nullopt;
    }
    request.body = m_unread.left(length);
    m_unread.remove(0, length);
    return request;
}

void ScriptedConnection::readToEnd()
{
    while (readMore())
        m_unread.clear();
}

bool ScriptedConnection::write(const QByteArray &bytes)
{
    qsizetype sent = 0;
    while (sent < bytes.size()) {
        const char *const rest = bytes.constData() + sent;
        const auto left = static_cast<std::size_t>(bytes.size() - sent);
        const auto count =
            m_tls ? SSL_write(m_tls, rest, static_cast<int>(left)) : ::send(m_socket, rest, left, MSG_NOSIGNAL);
        ERR_clear_error();
        if (count <= 0)
            return false;
        sent += count;
    }
    return true;
}

void ScriptedConnection::close()
{
    const std::lock_guard lock(m_mutex);
    if (m_socket >= 0)
        ::close(std::exchange(m_socket, -1));
}

void ScriptedConnection::reset()
{
    const linger now{1, 0};
    setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &now, sizeof now);
    close();
}

void ScriptedConnection::interrupt()
{
    const std::lock_guard lock(m_mutex);
    if (m_socket >= 0)
        shutdown(m_socket, SHUT_RDWR);
}

} // namespace ambrel
