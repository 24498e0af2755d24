#pragma once

#include <QAbstractHttpServer>
#include <QTcpServer>

namespace ambrel::local {

class Service;

/// Accepts connections and puts a size limit on each before the HTTP server sees it.
class LimitedTcpServer : public QTcpServer
{
    Q_OBJECT

public:
    using QTcpServer::QTcpServer;
    QTcpSocket *nextPendingConnection() override;
};

/// Carries requests and answers between HTTP and the service. `service` must outlive it.
class HttpFrontEnd : public QAbstractHttpServer
{
    Q_OBJECT

public:
    explicit HttpFrontEnd(Service &service) : m_service(service) {}

protected:
    bool handleRequest(const QHttpServerRequest &request, QTcpSocket *socket) override;
    void missingHandler(const QHttpServerRequest &request, QTcpSocket *socket) override;

private:
    Service &m_service;
};

} // namespace ambrel::local
