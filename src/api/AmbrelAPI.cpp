#include "api/AmbrelAPI.h"

#include "api/AmbrelAPIError.h"
#include "api/BaseUrl.h"
#include "api/Endpoints.h"
#include "api/HttpSession.h"
#include "model/Json.h"
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

/// Judges the status and reads the record. Worker pool.
template <typename Response>
Response decoded(const HttpReply &reply)
{
    if (reply.status < 200 || reply.status > 299)
        throw AmbrelAPIError::message(refusalText(reply));
    return readRecord<Response>(reply.body);
}

/// Performs one exchange. The bytes go from the network thread to the worker pool; only the record comes back.
template <typename Response>
HandOff<Response> send(const HttpRequest &request)
{
    HandOff<Response> answer;
    HttpSession::shared().perform(request, [answer](Outcome<HttpReply> outcome) {
        if (auto *const failure = std::get_if<std::exception_ptr>(&outcome)) {
            answer.finish(std::move(*failure));
            return;
        }
        startOnWorker([answer, reply = std::get<HttpReply>(std::move(outcome))] {
            answer.finish(outcomeOf([&reply] { return decoded<Response>(reply); }));
        });
    });
    return answer;
}

/// The client may be gone when these two resume: they take what they need by value.
template <typename Request, typename Response>
QCoro::Task<Response> post(QUrl baseURL, PostEndpoint<Request, Response> endpoint, Request body)
{
    HttpRequest request;
    request.method = HttpRequest::Method::Post;
    request.url = appendingPath(baseURL, QString::fromLatin1(endpoint.path));
    request.body = writeRecord(body);
    request.repeat = endpoint.repeat;
    co_return co_await send<Response>(request);
}

template <typename Response>
QCoro::Task<Response> get(QUrl baseURL, GetEndpoint<Response> endpoint, QString userId = {}, QString query = {})
{
    HttpRequest request;
    request.url = appendingPath(baseURL, QString::fromLatin1(endpoint.path) + userId);
    if (!query.isEmpty())
        request.url.setQuery(query, QUrl::StrictMode);
    co_return co_await send<Response>(request);
}

/// The query that names this installation.
QString deviceQuery(const QString &deviceId)
{
    return QStringLiteral("deviceId=") + percentEncoded(deviceId);
}

} // namespace

AmbrelAPI::AmbrelAPI(const QString &baseURLString) : m_baseURL(baseURLFromText(baseURLString)) {}

QCoro::Task<UserResponse> AmbrelAPI::signup(const RegisterRequest &request) const
{
    return post(m_baseURL, endpoints::signup, request);
}

QCoro::Task<UserResponse> AmbrelAPI::registerOrUpdate(const RegisterRequest &request) const
{
    return post(m_baseURL, endpoints::registerOrUpdate, request);
}

QCoro::Task<UserProfileResponse> AmbrelAPI::login(const LoginRequest &request) const
{
    return post(m_baseURL, endpoints::login, request);
}

QCoro::Task<UserResponse> AmbrelAPI::logout(const LogoutRequest &request) const
{
    return post(m_baseURL, endpoints::logout, request);
}

QCoro::Task<UserResponse> AmbrelAPI::updateLocation(const LocationUpdateRequest &request) const
{
    return post(m_baseURL, endpoints::updateLocation, request);
}

QCoro::Task<CheckResponse> AmbrelAPI::check(const QString &userId, const QString &deviceId) const
{
    return get(m_baseURL, endpoints::check, userId, deviceQuery(deviceId));
}

QCoro::Task<DismissResponse> AmbrelAPI::dismiss(const DismissRequest &request) const
{
    return post(m_baseURL, endpoints::dismiss, request);
}

QCoro::Task<SeeMeResponse> AmbrelAPI::seeMe(const SeeMeRequest &request) const
{
    return post(m_baseURL, endpoints::seeMe, request);
}

QCoro::Task<SeeMeMessagesResponse> AmbrelAPI::seeMeMessages(const QString &userId, const QString &deviceId) const
{
    return get(m_baseURL, endpoints::seeMeMessages, userId, deviceQuery(deviceId));
}

QCoro::Task<HealthResponse> AmbrelAPI::health() const
{
    return get(m_baseURL, endpoints::health);
}

QCoro::Task<AppVersionResponse> AmbrelAPI::appVersion() const
{
    return get(m_baseURL, endpoints::appVersion);
}

} // namespace ambrel
