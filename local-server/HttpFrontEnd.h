#pragma once

#include "local-server/OpenConnections.h"

#include <QAbstractHttpServer>
#include <QTcpServer>
#include <memory>

namespace ambrel::local {

class Service;

// The HTTP server module was a preview before Qt 6.8. What has changed since then is decided here and in
// HttpFrontEnd.cpp.
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
using Requester = QHttpServerResponder &;
#else
using Requester = QTcpSocket *;
#endif

/// Accepts connections and puts limits on each before the HTTP server sees it.
class LimitedTcpServer : public QTcpServer
{
    Q_OBJECT

public:
    explicit LimitedTcpServer(std::shared_ptr<OpenConnections> connections) : m_connections(std::move(connections)) {}
    QTcpSocket *nextPendingConnection() override;

private:
    std::shared_ptr<OpenConnections> m_connections;
};

/// Carries requests and answers between HTTP and the service. `service` must outlive it.
class HttpFrontEnd : public QAbstractHttpServer
{
    Q_OBJECT

public:
    HttpFrontEnd(Service &service, std::shared_ptr<OpenConnections> connections)
        : m_service(service), m_connections(std::move(connections))
    {
    }

protected:
    bool handleRequest(const QHttpServerRequest &request, Requester requester) override;
    void missingHandler(const QHttpServerRequest &request, Requester requester) override;

private:
    Service &m_service;
    std::shared_ptr<OpenConnections> m_connections;
};

} // namespace ambrel::local
