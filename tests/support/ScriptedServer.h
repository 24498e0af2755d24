#pragma once

#include "support/ScriptedConnection.h"
#include "support/ScriptedReply.h"

#include <condition_variable>
#include <deque>
#include <list>
#include <map>
#include <memory>
#include <thread>
#include <vector>

namespace ambrel {

/// The certificate that a server shows, by the names of tests/support/make-certificates; and the TLS it speaks.
struct TlsIdentity
{
    QString certificate;
    bool onlyOutdated = false; ///< TLS 1.1 and nothing newer
};

/// The certificate of the authority that signed "valid", as PEM.
QByteArray trustedAuthority();

/// An HTTP server on 127.0.0.1 that does what a test tells it to, on threads of its own, and remembers every request.
/// A request that was not foreseen gets status 500 and fails the test that ends with this object.
class ScriptedServer
{
public:
    ScriptedServer();
    /// Speaks https.
    explicit ScriptedServer(const TlsIdentity &identity);
    ~ScriptedServer();
    Q_DISABLE_COPY_MOVE(ScriptedServer)

    /// The server's address, ending in "/".
    QString url(const QString &host = QStringLiteral("127.0.0.1")) const;
    quint16 port() const { return m_port; }

    /// Answers every such request with `reply`. `path` is as on the wire, from its "/", without the query.
    void on(const QByteArray &method, const QByteArray &path, const ScriptedReply &reply);
    /// Answers one such request with `reply`, before what `on` says; replies queue up.
    void next(const QByteArray &method, const QByteArray &path, const ScriptedReply &reply);
    /// Does this on every new connection before anything is read or TLS is spoken.
    void onConnect(const ScriptedReply &reply);
    /// Lets one held reply go, now or when it comes.
    void release(const QByteArray &method, const QByteArray &path);

    /// Every request so far, in the order of arrival.
    QList<ReceivedRequest> requests() const;
    /// The requests of one kind.
    QList<ReceivedRequest> requests(const QByteArray &method, const QByteArray &path) const;
    /// How many requests of one kind have come; for QTRY_COMPARE.
    int count(const QByteArray &method, const QByteArray &path) const;
    /// How many connections have been accepted.
    int connectionCount() const;

private:
    struct Endpoint
    {
        std::deque<ScriptedReply> once;
        std::optional<ScriptedReply> always;
        int releases = 0;
    };
    using Key = std::pair<QByteArray, QByteArray>;

    void listen();
    void acceptConnections();
    void serve(ScriptedConnection &connection);
    ScriptedReply replyTo(const ReceivedRequest &request);
    bool play(const ScriptedReply &reply, ScriptedConnection &connection, const Key &key);
    bool rest(std::chrono::milliseconds time);
    bool awaitRelease(const Key &key);

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_stopping = false;
    std::map<Key, Endpoint> m_endpoints;
    ScriptedReply m_onConnect;
    std::vector<ReceivedRequest> m_requests; // not a QList, whose sharing between threads a race checker misreads
    QList<QByteArray> m_unforeseen;
    std::list<std::pair<std::unique_ptr<ScriptedConnection>, std::thread>> m_connections;

    SSL_CTX *m_tls = nullptr;
    int m_listener = -1;
    quint16 m_port = 0;
    std::thread m_acceptor;
};

} // namespace ambrel
