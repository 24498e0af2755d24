#include "support/ScriptedServer.h"

#include <QFile>
#include <QTest>
#include <csignal>
#include <netinet/in.h>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace ambrel {

namespace {

/// What make-certificates has made.
QString certificateDirectory()
{
    return QStringLiteral(AMBREL_TEST_CERTIFICATES);
}

SSL_CTX *tlsFor(const TlsIdentity &identity)
{
    const QByteArray path = QFile::encodeName(certificateDirectory() + u'/' + identity.certificate);
    SSL_CTX *const tls = SSL_CTX_new(TLS_server_method());
    bool usable = SSL_CTX_use_certificate_chain_file(tls, QByteArray(path + ".pem").constData()) == 1 &&
                  SSL_CTX_use_PrivateKey_file(tls, QByteArray(path + ".key").constData(), SSL_FILETYPE_PEM) == 1;
    if (identity.onlyOutdated) {
        SSL_CTX_set_security_level(tls, 0);
        usable = usable && SSL_CTX_set_min_proto_version(tls, TLS1_1_VERSION) == 1 &&
                 SSL_CTX_set_max_proto_version(tls, TLS1_1_VERSION) == 1;
    }
    if (!usable)
        qFatal("no certificate %s", path.constData());
    return tls;
}

/// A client that leaves while a TLS record is written must not end the test program.
void blockPipeSignal()
{
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
}

} // namespace

QByteArray trustedAuthority()
{
    QFile file(certificateDirectory() + QStringLiteral("/trusted-authority.pem"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

ScriptedServer::ScriptedServer()
{
    listen();
}

ScriptedServer::ScriptedServer(const TlsIdentity &identity) : m_tls(tlsFor(identity))
{
    listen();
}

ScriptedServer::~ScriptedServer()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
        m_changed.notify_all();
        for (const auto &[connection, thread] : m_connections)
            connection->interrupt();
    }
    shutdown(m_listener, SHUT_RDWR);
    m_acceptor.join();
    for (auto &[connection, thread] : m_connections)
        thread.join();
    m_connections.clear();
    ::close(m_listener);
    SSL_CTX_free(m_tls);
    for (const QByteArray &line : std::as_const(m_unforeseen))
        QTest::qFail(QByteArray("unforeseen request: " + line).constData(), __FILE__, __LINE__);
}

void ScriptedServer::listen()
{
    m_listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto *const generic = reinterpret_cast<sockaddr *>(&address);
    if (bind(m_listener, generic, size) != 0 || ::listen(m_listener, 64) != 0 ||
        getsockname(m_listener, generic, &size) != 0)
        qFatal("no port on the loopback interface");
    m_port = ntohs(address.sin_port);
    m_acceptor = std::thread([this] { acceptConnections(); });
}

void ScriptedServer::acceptConnections()
{
    while (true) {
        const int accepted = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (accepted < 0)
            return;
        auto connection = std::make_unique<ScriptedConnection>(accepted, m_tls);
        ScriptedConnection &served = *connection;
        const std::lock_guard lock(m_mutex);
        if (m_stopping)
            return;
        m_connections.emplace_back(std::move(connection), std::thread([this, &served] {
                                       blockPipeSignal();
                                       serve(served);
                                       served.close();
                                   }));
    }
}

void ScriptedServer::serve(ScriptedConnection &connection)
{
    ScriptedReply greeting;
    {
        const std::lock_guard lock(m_mutex);
        greeting = m_onConnect;
    }
    if (!play(greeting, connection, {}) || !connection.handshake())
        return;
    while (const std::optional<ReceivedRequest> request = connection.readRequest()) {
        if (!play(replyTo(*request), connection, {request->method, request->path}))
            return;
    }
}

ScriptedReply ScriptedServer::replyTo(const ReceivedRequest &request)
{
    const std::lock_guard lock(m_mutex);
    m_requests.push_back(request);
    const auto found = m_endpoints.find({request.method, request.path});
    if (found != m_endpoints.end()) {
        auto &[once, always, releases] = found->second;
        if (!once.empty()) {
            const ScriptedReply reply = once.front();
            once.pop_front();
            return reply;
        }
        if (always)
            return *always;
    }
    m_unforeseen.append(request.method + ' ' + request.target);
    return ScriptedReply::json(R"({"error":"unforeseen request"})", 500);
}

/// False when the connection is over.
bool ScriptedServer::play(const ScriptedReply &reply, ScriptedConnection &connection, const Key &key)
{
    using Kind = ScriptedReply::Step::Kind;
    for (const auto &[kind, bytes, time] : reply.steps()) {
        switch (kind) {
        case Kind::Send:
            if (!connection.write(bytes))
                return false;
            break;
        case Kind::Drip:
            for (const char byte : bytes) {
                if (!rest(time) || !connection.write(QByteArray(1, byte)))
                    return false;
            }
            break;
        case Kind::Flood:
            while (connection.write(bytes)) {
            }
            return false;
        case Kind::Pause:
            if (!rest(time))
                return false;
            break;
        case Kind::Hold:
            if (!awaitRelease(key))
                return false;
            break;
        case Kind::Hang:
            connection.readToEnd();
            return false;
        case Kind::Close:
            return false;
        case Kind::Reset:
            connection.reset();
            return false;
        }
    }
    return true;
}

/// False when the server ends meanwhile.
bool ScriptedServer::rest(std::chrono::milliseconds time)
{
    std::unique_lock lock(m_mutex);
    return !m_changed.wait_for(lock, time, [this] { return m_stopping; });
}

/// False when the server ends meanwhile.
bool ScriptedServer::awaitRelease(const Key &key)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this, &key] { return m_stopping || m_endpoints[key].releases > 0; });
    --m_endpoints[key].releases;
    return !m_stopping;
}

QString ScriptedServer::url(const QString &host) const
{
    return QStringLiteral("%1://%2:%3/")
        .arg(m_tls ? QStringLiteral("https") : QStringLiteral("http"), host)
        .arg(m_port);
}

void ScriptedServer::on(const QByteArray &method, const QByteArray &path, const ScriptedReply &reply)
{
    const std::lock_guard lock(m_mutex);
    m_endpoints[{method, path}].always = reply;
}

void ScriptedServer::next(const QByteArray &method, const QByteArray &path, const ScriptedReply &reply)
{
    const std::lock_guard lock(m_mutex);
    m_endpoints[{method, path}].once.push_back(reply);
}

void ScriptedServer::onConnect(const ScriptedReply &reply)
{
    const std::lock_guard lock(m_mutex);
    m_onConnect = reply;
}

void ScriptedServer::release(const QByteArray &method, const QByteArray &path)
{
    const std::lock_guard lock(m_mutex);
    ++m_endpoints[{method, path}].releases;
    m_changed.notify_all();
}

QList<ReceivedRequest> ScriptedServer::requests() const
{
    const std::lock_guard lock(m_mutex);
    return {m_requests.begin(), m_requests.end()};
}

QList<ReceivedRequest> ScriptedServer::requests(const QByteArray &method, const QByteArray &path) const
{
    const std::lock_guard lock(m_mutex);
    QList<ReceivedRequest> found;
    for (const ReceivedRequest &request : m_requests) {
        if (request.method == method && request.path == path)
            found.append(request);
    }
    return found;
}

int ScriptedServer::count(const QByteArray &method, const QByteArray &path) const
{
    return static_cast<int>(requests(method, path).size());
}

int ScriptedServer::connectionCount() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_connections.size());
}

} // namespace ambrel
