#include "local-server/HttpFrontEnd.h"

#include "local-server/RequestLimit.h"
#include "local-server/Routes.h"

#include <QHttpServerRequest>
#include <QHttpServerResponder>
#include <QHttpServerResponse>
#include <QMetaEnum>
#include <QTcpSocket>

namespace ambrel::local {

namespace {

// The HTTP server keeps a request's body until the next request on the same connection.
constexpr qsizetype maxKeptBody = qsizetype{256} * 1024;

QByteArray methodName(QHttpServerRequest::Method method)
{
    return QByteArray(QMetaEnum::fromType<QHttpServerRequest::Method>().valueToKey(int(method))).toUpper();
}

void addHeader(QHttpServerResponse &response, const QByteArray &name, const QByteArray &value)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    QHttpHeaders headers = response.headers();
    headers.append(name, value);
    response.setHeaders(std::move(headers));
#else
    response.setHeader(name, value);
#endif
}

} // namespace

QTcpSocket *LimitedTcpServer::nextPendingConnection()
{
    QTcpSocket *const socket = QTcpServer::nextPendingConnection();
    if (socket)
        new RequestLimit(socket, m_connections); // owned by the socket
    return socket;
}

bool HttpFrontEnd::handleRequest(const QHttpServerRequest &request, Requester requester)
{
    QTcpSocket *const socket = m_connections->heardLast();
    RequestLimit::of(socket)->startOver();
    const Answer answer = answerRequest(m_service, methodName(request.method()), request.url(), request.body());
    const bool wantsBody = request.method() != QHttpServerRequest::Method::Head;
    QHttpServerResponse response(QByteArrayLiteral("application/json"), wantsBody ? answer.body : QByteArray(),
                                 QHttpServerResponse::StatusCode(answer.status));
    addHeader(response, QByteArrayLiteral("Cache-Control"), QByteArrayLiteral("no-store"));
    if (!answer.allowed.isEmpty())
        addHeader(response, QByteArrayLiteral("Allow"), answer.allowed);
    const bool isLast =
        request.value(QByteArrayLiteral("Connection")).toLower() == "close" || request.body().size() > maxKeptBody;
    if (isLast)
        addHeader(response, QByteArrayLiteral("Connection"), QByteArrayLiteral("close"));
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    requester.sendResponse(response);
#else
    response.write(makeResponder(request, requester));
#endif
    if (isLast) // queued, because the HTTP server still works on this connection; it ends once everything is written
        QMetaObject::invokeMethod(socket, &QTcpSocket::disconnectFromHost, Qt::QueuedConnection);
    return true;
}

void HttpFrontEnd::missingHandler(const QHttpServerRequest &, Requester)
{
    // handleRequest() answers everything.
}

} // namespace ambrel::local
