#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <mutex>
#include <optional>

using SSL = struct ssl_st;
using SSL_CTX = struct ssl_ctx_st;

namespace ambrel {

/// One request as it came over the wire.
struct ReceivedRequest
{
    QByteArray method;
    QByteArray target; ///< as sent, with its query
    QByteArray path;   ///< the target up to its "?"
    QList<QPair<QByteArray, QByteArray>> headers;
    QByteArray body;

    /// The value of a header, by its name in any case; empty when it is absent.
    QByteArray header(const QByteArray &name) const;
};

/// The server's end of one connection. Blocking, for one thread; `interrupt` alone may come from another.
class ScriptedConnection
{
public:
    /// Takes `socket` over; `tls` is null for plain text.
    ScriptedConnection(int socket, SSL_CTX *tls);
    ~ScriptedConnection();
    Q_DISABLE_COPY_MOVE(ScriptedConnection)

    /// Makes the TLS connection; true at once without TLS.
    bool handshake();
    /// The next request; none when the client has left.
    std::optional<ReceivedRequest> readRequest();
    /// Reads and forgets until the client leaves.
    void readToEnd();
    /// False when the client has left.
    bool write(const QByteArray &bytes);
    void close();
    void reset();
    /// Makes everything above end now.
    void interrupt();

private:
    bool readMore();

    std::mutex m_mutex; // guards the socket's number against `interrupt`
    int m_socket;
    SSL *m_tls = nullptr;
    QByteArray m_unread;
};

} // namespace ambrel
