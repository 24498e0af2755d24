#include "local-server/LocalServer.h"

#include "local-server/HttpFrontEnd.h"
#include "local-server/Service.h"

namespace ambrel {

namespace {

QUrl baseUrl(const QHostAddress &address, quint16 port)
{
    QUrl url;
    url.setScheme(QStringLiteral("http"));
    url.setHost(address.toString());
    url.setPort(port);
    url.setPath(QStringLiteral("/"));
    return url;
}

} // namespace

class LocalServer::Private
{
public:
    explicit Private(const LocalServerOptions &options) : service(options), frontEnd(service, connections) {}

    local::Service service;
    std::shared_ptr<local::OpenConnections> connections = std::make_shared<local::OpenConnections>();
    local::HttpFrontEnd frontEnd;
};

LocalServer::LocalServer(const LocalServerOptions &options) : d(std::make_unique<Private>(options)) {}

LocalServer::~LocalServer() = default;

quint16 LocalServer::listen(const QHostAddress &address, quint16 port)
{
    auto listener = std::make_unique<local::LimitedTcpServer>(d->connections);
    if (!listener->listen(address, port)) {
        const QString place = QStringLiteral("%1 port %2").arg(address.toString()).arg(port);
        m_errorText = listener->serverError() == QAbstractSocket::AddressInUseError
                          ? QStringLiteral("%1 is taken: another program listens there.").arg(place)
                          : QStringLiteral("Cannot listen on %1: %2.").arg(place, listener->errorString());
        return 0;
    }
    m_url = baseUrl(address, listener->serverPort());
    d->service.setAddress(m_url);
    d->frontEnd.bind(listener.release()); // becomes its parent
    return quint16(m_url.port());
}

} // namespace ambrel
