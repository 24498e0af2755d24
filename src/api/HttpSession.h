#pragma once

#include "api/HttpTransfer.h"

#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace ambrel {

class HttpEngine;

/// The process-wide HTTP client. Sockets, TLS and inflating live on a network thread of its own, which starts with
/// the first request.
class HttpSession
{
public:
    /// The one session of this process. It closes when the application object is destroyed, and every coroutine
    /// that still waits for an answer ends then.
    static HttpSession &shared();

    HttpSession() = default;
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

    /// What bounds the exchanges that begin from now on; the defaults unless a test has others. Any thread.
    void setLimits(const TransferLimits &limits);

private:
    std::exception_ptr startThread();
    void run();

    std::mutex m_mutex; // guards what follows, down to the thread
    TransferLimits m_limits;
    bool m_isClosed = false;
    bool m_isRunning = false; ///< the network thread takes what arrives
    std::vector<std::shared_ptr<HttpTransfer>> m_arrived;
    HttpEngine *m_engine = nullptr; ///< the network thread's own; only to wake it
    // Not a QThread: waiting for one ends before its thread-local data is freed, of which TLS has some.
    std::thread m_thread;
};

} // namespace ambrel
