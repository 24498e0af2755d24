#include "local-server/HttpFrontEnd.h"

#include "local-server/RequestLimit.h"
#include "local-server/Routes.h"

#include <QHttpServerRequest>
#include <QHttpServerResponse>
#include <QMetaEnum>

namespace ambrel::local {

namespace {

QByteArray methodName(QHttpServerRequest::Method method)
{
    return QByteArray(QMetaEnum::fromType<QHttpServerRequest::Method>().valueToKey(int(method))).toUpper();
}

} // namespace

QTcpSocket *LimitedTcpServer::nextPendingConnection()
{
    QTcpSocket *const socket = QTcpServer::nextPendingConnection();
    if (socket)
        new RequestLimit(socket);
    return socket;
}

bool HttpFrontEnd::handleRequest(const QHttpServerRequest &request, QTcpSocket *socket)
{
    RequestLimit::of(socket)->startOver();
    const Answer answer = answerRequest(m_service, methodName(request.method()), request.url(), request.body());
    const bool wantsBody = request.method() != QHttpServerRequest::Method::Head;
    QHttpServerResponse response(QByteArrayLiteral("application/json"), wantsBody ? answer.body : QByteArray(),
                                 QHttpServerResponse::StatusCode(answer.status));
    response.setHeader(QByteArrayLiteral("Cache-Control"), QByteArrayLiteral("no-store"));
    if (!answer.allowed.isEmpty())
        response.setHeader(QByteArrayLiteral("Allow"), answer.allowed);
    const bool isLast = request.value(QByteArrayLiteral("Connection")).toLower() == "close";
    if (isLast)
        response.setHeader(QByteArrayLiteral("Connection"), QByteArrayLiteral("close"));
    response.write(makeResponder(request, socket));
    if (isLast)
        socket->disconnectFromHost(); // once everything is written
    return true;
}

void HttpFrontEnd::missingHandler(const QHttpServerRequest &, QTcpSocket *)
{
    // handleRequest() answers everything.
}

} // namespace ambrel::local
