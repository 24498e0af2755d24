#pragma once

#include "api/Endpoints.h"
#include "model/Json.h"
#include "tasks/HandOff.h"

#include <QUrl>

namespace ambrel {

/// The client of one server: `co_await api.call(endpoints::health)`. Each call performs one exchange; its record is
/// decoded on the worker pool and arrives on the calling thread, which needs an event loop.
/// A call fails with AmbrelAPIError, TransportError or DecodingError, or with std::bad_alloc where a reply does not fit
/// the memory; EncodingError is thrown at once. The object may be released while its calls run.
class AmbrelAPI
{
public:
    /// Takes the server address as typed; always succeeds.
    explicit AmbrelAPI(const QString &baseURLString);

    QUrl baseURL() const { return m_baseURL; }
    void setBaseURL(const QUrl &url) { m_baseURL = url; }

    template <typename Request, typename Response>
    HandOff<Response> call(const PostEndpoint<Request, Response> &endpoint, const Request &record) const
    {
        return answerTo<Response>(
            {HttpRequest::Method::Post, urlOf(endpoint.path), writeRecord(record), endpoint.repeat});
    }
    template <typename Response>
    HandOff<Response> call(const GetEndpoint<Response> &endpoint) const
    {
        return answerTo<Response>({.url = urlOf(endpoint.path)});
    }
    template <typename Response>
    HandOff<Response> call(const UserEndpoint<Response> &endpoint, const QString &userId, const QString &deviceId) const
    {
        return answerTo<Response>({.url = urlOf(endpoint.path, userId, deviceId)});
    }

private:
    using Body = std::shared_ptr<Bytes>;

    QUrl urlOf(const char *path) const;
    QUrl urlOf(const char *path, const QString &userId, const QString &deviceId) const;
    /// Performs one exchange. `receiver` is called once: with the body of a success on the worker pool, or with the
    /// failure on any thread.
    static void perform(const HttpRequest &request, std::function<void(const Outcome<Body> &)> receiver);

    template <typename Response>
    static HandOff<Response> answerTo(const HttpRequest &request)
    {
        HandOff<Response> answer;
        perform(request, [answer](const Outcome<Body> &body) {
            if (body.error)
                answer.finish(body.error);
            else
                answer.finish(outcomeOf([&body] { return readRecord<Response>(*body.value); }));
        });
        return answer;
    }

    QUrl m_baseURL;
};

} // namespace ambrel
