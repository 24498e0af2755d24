#include "local-server/Routes.h"

#include "local-server/Service.h"
#include "local-server/ServiceError.h"
#include "local-server/Validation.h"
#include "model/Json.h"

#include <QUrlQuery>
#include <algorithm>
#include <array>

namespace ambrel::local {

namespace {

/// The parts of a request that an endpoint may look at.
struct Input
{
    QString tail; ///< what follows the endpoint's path, percent-decoded
    QUrlQuery query;
    QByteArray body;
};

struct Endpoint
{
    const char *method;
    QByteArrayView path; ///< one that ends in "/" is followed by a user ID
    QByteArray (*perform)(Service &, const Input &);

    bool matches(QByteArrayView requested) const
    {
        return path.endsWith('/') ? requested.startsWith(path) : requested == path;
    }
};

template <typename>
struct OperationTraits;
template <typename Response, typename Request>
struct OperationTraits<Response (Service::*)(const Request &)>
{
    using Record = Request;
};

/// An operation that takes a record.
template <auto operation>
QByteArray post(Service &service, const Input &input)
{
    using Record = typename OperationTraits<decltype(operation)>::Record;
    const std::string_view json(input.body.constData(), std::size_t(input.body.size()));
    const auto record = readRecord<Record>(std::make_shared<Bytes>(json));
    validate(record);
    return writeRecord((service.*operation)(record));
}

/// An operation on the user that the path and the query name.
template <auto operation>
QByteArray getForUser(Service &service, const Input &input)
{
    const QString deviceId = input.query.queryItemValue(QStringLiteral("deviceId"), QUrl::FullyDecoded);
    validateId("userId", input.tail);
    validateId("deviceId", deviceId);
    return writeRecord((service.*operation)(input.tail, deviceId));
}

/// An operation without any input.
template <auto operation>
QByteArray get(Service &service, const Input &)
{
    return writeRecord((service.*operation)());
}

constexpr std::array endpoints = {
    Endpoint{"POST", "/api/signup", post<&Service::signup>},
    // Signing up again updates the account, which is all that registerOrUpdate adds.
    Endpoint{"POST", "/api/registerOrUpdate", post<&Service::signup>},
    Endpoint{"POST", "/api/login", post<&Service::login>},
    Endpoint{"POST", "/api/logout", post<&Service::logout>},
    Endpoint{"POST", "/api/location", post<&Service::updateLocation>},
    Endpoint{"GET", "/api/check/", getForUser<&Service::check>},
    Endpoint{"POST", "/api/dismiss", post<&Service::dismiss>},
    Endpoint{"POST", "/api/see-me", post<&Service::seeMe>},
    Endpoint{"GET", "/api/see-me/", getForUser<&Service::seeMeMessages>},
    Endpoint{"GET", "/health", get<&Service::health>},
    Endpoint{"GET", "/api/app-version", get<&Service::appVersion>},
};

QString problemText(const DecodingError &error)
{
    return error.problem().isEmpty() ? QStringLiteral("The request is no JSON object.")
                                     : QStringLiteral("The request cannot be read: %1.").arg(error.problem());
}

Answer refusal(int status, const QString &text)
{
    return {status, errorBody(text), {}};
}

Answer perform(const Endpoint &endpoint, Service &service, const Input &input)
{
    try {
        return {200, endpoint.perform(service, input), {}};
    } catch (const ServiceError &error) {
        return refusal(error.status(), error.errorDescription());
    } catch (const DecodingError &error) {
        return refusal(400, problemText(error));
    } catch (const std::exception &) {
        return refusal(500, QStringLiteral("The server could not do this."));
    }
}

} // namespace

QByteArray errorBody(const QString &text)
{
    return writeRecord(APIErrorResponse{text});
}

Answer answerRequest(Service &service, const QByteArray &method, const QUrl &url, const QByteArray &body)
{
    const QByteArray path = url.path(QUrl::FullyEncoded).toUtf8();
    const auto endpoint =
        std::find_if(endpoints.begin(), endpoints.end(), [&path](const Endpoint &e) { return e.matches(path); });
    if (endpoint == endpoints.end())
        return refusal(404, QStringLiteral("There is nothing at this address."));
    if (method != endpoint->method) {
        Answer answer = refusal(405, QStringLiteral("This address needs %1.").arg(QLatin1String(endpoint->method)));
        answer.allowed = endpoint->method;
        return answer;
    }
    // A user ID may hold "/": everything behind the endpoint's own path belongs to it.
    const QByteArray tail = path.sliced(endpoint->path.size());
    return perform(*endpoint, service,
                   {QString::fromUtf8(QByteArray::fromPercentEncoding(tail)), QUrlQuery(url), body});
}

} // namespace ambrel::local
