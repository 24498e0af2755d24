#include "api/HttpSession.h"

#include "api/AmbrelAPIError.h"
#include "api/CurlErrors.h"
#include "api/HttpEngine.h"
#include "api/TransportError.h"
#include "tasks/Worker.h"

#include <QCoreApplication>
#include <system_error>

namespace ambrel {

namespace {

constexpr std::chrono::seconds maxWaitForWorkers{1};

template <typename Error>
std::exception_ptr failure(const Error &error)
{
    return std::make_exception_ptr(error);
}

/// Why nothing is sent to `url`; null when it is an address to talk HTTP to.
std::exception_ptr refusalOf(const QUrl &url)
{
    if (isHttpAddress(url))
        return nullptr;
    if (!url.isValid())
        return failure(TransportError(sentenceFor(CURLE_URL_MALFORMAT)));
    const QString scheme = url.scheme();
    if (scheme == QLatin1String("file") || scheme == QLatin1String("data"))
        return failure(AmbrelAPIError::message(QStringLiteral("No server response.")));
    return failure(
        TransportError(QStringLiteral("The server address must begin with http:// or https:// and name a server.")));
}

/// The event loop has ended with the application object: wakes, one last time, what waits for an answer.
void closeSharedSession()
{
    HttpSession::shared().close();
    // Answers that are being decoded, and what they set off.
    while (waitForWorkers(maxWaitForWorkers) && CallQueue::ofThisThread()->deliver()) {
    }
}

} // namespace

HttpSession &HttpSession::shared()
{
    static HttpSession session;
    static std::once_flag closing;
    std::call_once(closing, [] { qAddPostRoutine(closeSharedSession); });
    return session;
}

HttpSession::~HttpSession()
{
    close();
}

void HttpSession::perform(const HttpRequest &request, HttpReceiver receiver)
{
    std::exception_ptr refusal = refusalOf(request.url);
    if (!refusal) {
        const std::lock_guard lock(m_mutex);
        refusal = startThread();
        if (!refusal) {
            m_arrived.push_back(std::make_shared<HttpTransfer>(request, m_limits, std::move(receiver)));
            if (m_engine)
                m_engine->wake();
            return;
        }
    }
    receiver(std::move(refusal));
}

/// Sees to it that the network thread runs; why it does not, otherwise. Under the lock.
std::exception_ptr HttpSession::startThread()
{
    if (m_isClosed)
        return failure(TransportError(sentenceFor(CURLE_ABORTED_BY_CALLBACK)));
    if (m_isRunning)
        return nullptr;
    if (m_thread.joinable())
        m_thread.join(); // it has ended, because libcurl could not be used
    try {
        m_thread = std::thread([this] { run(); });
    } catch (const std::system_error &) {
        return failure(TransportError(sentenceFor(CURLE_NO_CONNECTION_AVAILABLE)));
    }
    m_isRunning = true;
    return nullptr;
}

void HttpSession::run()
{
    HttpEngine engine;
    for (bool isEnding = false; !isEnding;) {
        std::vector<std::shared_ptr<HttpTransfer>> arrived;
        {
            const std::lock_guard lock(m_mutex);
            arrived.swap(m_arrived);
            isEnding = m_isClosed || !engine.isUsable();
            m_isRunning = !isEnding;
            m_engine = isEnding ? nullptr : &engine;
        }
        for (auto &transfer : arrived)
            engine.start(std::move(transfer));
        if (!isEnding)
            engine.turn();
    }
}

void HttpSession::close()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isClosed = true;
        if (m_engine)
            m_engine->wake();
    }
    if (m_thread.joinable())
        m_thread.join();
}

void HttpSession::setLimits(const TransferLimits &limits)
{
    const std::lock_guard lock(m_mutex);
    m_limits = limits;
}

} // namespace ambrel
