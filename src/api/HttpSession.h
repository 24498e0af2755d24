#pragma once

#include "model/Bytes.h"

#include <QByteArray>
#include <QFuture>
#include <QUrl>
#include <chrono>
#include <memory>

namespace ambrel {

/// One request. A POST carries `body` as JSON; a GET has none.
struct HttpRequest
{
    enum class Method { Get, Post };
    /// Whether a request that may have reached the server may be sent again.
    enum class Repeat { Harmless, Never };

    Method method = Method::Get;
    QUrl url;
    QByteArray body;
    Repeat repeat = Repeat::Harmless;
};

/// One answer with its whole body, inflated.
struct HttpReply
{
    int status = 0; ///< the HTTP status of the last hop
    std::shared_ptr<Bytes> body; ///< for one reader only
};

/// The process-wide HTTP client. Sockets, TLS and inflating live on a network thread of its own.
/// `shared()` is made on first use and must outlive every coroutine that awaits it.
class HttpSession
{
public:
    /// The one session of this process.
    static HttpSession &shared();

    ~HttpSession();
    HttpSession(const HttpSession &) = delete;
    HttpSession &operator=(const HttpSession &) = delete;

    /// Performs one exchange, redirects included. Fails with TransportError, or with
    /// AmbrelAPIError "No server response." for an address that would answer without HTTP.
    /// Callable from any thread; the future is finished on the network thread.
    QFuture<HttpReply> perform(HttpRequest request);

    /// Silence after which an exchange fails, at any stage; 12 s unless a test shortens it.
    void setIdleTimeout(std::chrono::milliseconds timeout);
    /// Trusts these PEM certificates instead of the platform's store; empty goes back to it. For tests.
    void setTrustedCertificates(const QByteArray &pem);

private:
    HttpSession();
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace ambrel
