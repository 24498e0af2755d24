#pragma once

#include "api/HttpExchange.h"

#include <chrono>
#include <memory>

namespace ambrel {

/// The process-wide HTTP client. Sockets, TLS and inflating live on a network thread of its own, which starts with
/// the first request.
class HttpSession
{
public:
    /// The one session of this process. It closes when the application object is destroyed, and every coroutine
    /// that still waits for an answer ends then.
    static HttpSession &shared();

    HttpSession();
    /// Closes the session.
    ~HttpSession();
    HttpSession(const HttpSession &) = delete;
    HttpSession &operator=(const HttpSession &) = delete;

    /// Performs one exchange, redirects included. `receiver` is called exactly once: on the network thread, or at
    /// once where nothing can be sent. It gets a TransportError on failure, or AmbrelAPIError "No server response."
    /// for an address that would answer without HTTP. Any thread.
    void perform(const HttpRequest &request, HttpReceiver receiver);

    /// Fails what is under way and stops the network thread; later requests fail at once. Any thread but that one.
    void close();

    /// Silence after which an exchange fails, at any stage; 12 s unless a test shortens it.
    void setIdleTimeout(std::chrono::milliseconds timeout);
    /// Bytes that an answer may have once inflated; 512 MiB unless a test lowers it.
    void setLargestAnswer(std::size_t bytes);
    /// Trusts these PEM certificates instead of the platform's store; empty goes back to it. For tests.
    void setTrustedCertificates(const QByteArray &pem);

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace ambrel
