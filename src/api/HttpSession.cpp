#include "api/HttpSession.h"

#include "api/AmbrelAPIError.h"
#include "api/CurlErrors.h"
#include "api/HttpEngine.h"
#include "api/TransportError.h"
#include "tasks/Worker.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <thread>

namespace ambrel {

namespace {

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
    do
        waitForWorkers(); // answers that are being decoded, and what they set off
    while (Mailbox::ofThisThread()->deliver());
}

} // namespace

class HttpSession::Private
{
public:
    void startThread();
    void runThread();

    std::mutex mutex; // guards what follows, down to the thread
    TransferLimits limits;
    bool closed = false;
    std::shared_ptr<Mailbox> networkThread; // null before the first request
    // Not a QThread: waiting for one ends before its thread-local data is freed, of which TLS has some.
    std::thread thread;

    HttpEngine *engine = nullptr; // these two on the network thread alone
    QEventLoop *loop = nullptr;
};

void HttpSession::Private::startThread()
{
    networkThread = std::make_shared<Mailbox>();
    thread = std::thread([this] { runThread(); });
}

void HttpSession::Private::runThread()
{
    pthread_setname_np(pthread_self(), "network");
    QEventLoop events;
    HttpEngine transfers;
    loop = &events;
    engine = &transfers;
    networkThread->open();
    events.exec();
    networkThread->close();
}

HttpSession &HttpSession::shared()
{
    static HttpSession session;
    static std::once_flag closing;
    std::call_once(closing, [] { qAddPostRoutine(closeSharedSession); });
    return session;
}

HttpSession::HttpSession() : d(std::make_unique<Private>()) {}

HttpSession::~HttpSession()
{
    close();
}

void HttpSession::perform(const HttpRequest &request, HttpReceiver receiver)
{
    if (auto refusal = refusalOf(request.url)) {
        receiver(std::move(refusal));
        return;
    }
    {
        const std::lock_guard lock(d->mutex);
        if (!d->closed) {
            if (!d->networkThread)
                d->startThread();
            auto transfer = std::make_shared<HttpTransfer>(request, d->limits, std::move(receiver));
            d->networkThread->post([this, sent = std::move(transfer)] { d->engine->start(sent); });
            return;
        }
    }
    receiver(failure(TransportError(sentenceFor(CURLE_ABORTED_BY_CALLBACK))));
}

void HttpSession::close()
{
    {
        const std::lock_guard lock(d->mutex);
        if (std::exchange(d->closed, true) || !d->networkThread)
            return;
        d->networkThread->post([this] { d->loop->quit(); });
    }
    d->thread.join();
}

void HttpSession::setIdleTimeout(std::chrono::milliseconds timeout)
{
    const std::lock_guard lock(d->mutex);
    d->limits.silence = timeout;
}

void HttpSession::setLargestAnswer(std::size_t bytes)
{
    const std::lock_guard lock(d->mutex);
    d->limits.largestAnswer = bytes;
}

void HttpSession::setTrustedCertificates(const QByteArray &pem)
{
    const std::lock_guard lock(d->mutex);
    d->limits.trustedCertificates = pem;
}

} // namespace ambrel
