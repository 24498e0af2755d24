#include "api/AmbrelAPI.h"

#include "api/AmbrelAPIError.h"
#include "api/BaseUrl.h"
#include "api/CurlErrors.h"
#include "api/HttpSession.h"
#include "api/TransportError.h"
#include "tasks/Worker.h"

namespace ambrel {

namespace {

/// The text of a refusal: the server's own where its body holds one.
QString refusalText(const HttpReply &reply)
{
    try {
        return readRecord<APIErrorResponse>(reply.body).error;
    } catch (const DecodingError &) {
        return QStringLiteral("Server returned %1.").arg(reply.status);
    }
}

/// The body of a success. Worker pool.
std::shared_ptr<Bytes> acceptedBody(const HttpReply &reply)
{
    if (reply.status < 200 || reply.status > 299)
        throw AmbrelAPIError::message(refusalText(reply));
    return reply.body;
}

} // namespace

AmbrelAPI::AmbrelAPI(const QString &baseURLString) : m_baseURL(baseURLFromText(baseURLString)) {}

QUrl AmbrelAPI::urlOf(const char *path) const
{
    return appendingPath(m_baseURL, QString::fromLatin1(path));
}

QUrl AmbrelAPI::urlOf(const char *path, const QString &userId, const QString &deviceId) const
{
    QUrl url = appendingPath(m_baseURL, QString::fromLatin1(path) + userId);
    if (url.isValid())
        url.setQuery(QStringLiteral("deviceId=") + percentEncoded(deviceId), QUrl::StrictMode);
    return url;
}

void AmbrelAPI::perform(const HttpRequest &request, std::function<void(const Outcome<Body> &)> receiver)
{
    HttpSession::shared().perform(request, [receiver = std::move(receiver)](const Outcome<HttpReply> &outcome) {
        if (outcome.error) {
            receiver(outcome.error);
            return;
        }
        const bool isStarted = startOnWorker(
            [receiver, reply = *outcome.value] { receiver(outcomeOf([&reply] { return acceptedBody(reply); })); });
        if (!isStarted)
            receiver(std::make_exception_ptr(TransportError(sentenceFor(CURLE_NO_CONNECTION_AVAILABLE))));
    });
}

} // namespace ambrel
