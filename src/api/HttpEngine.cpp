#include "api/HttpEngine.h"

#include <QSocketNotifier>
#include <algorithm>

namespace ambrel {

HttpEngine::HttpEngine()
{
    curl_global_init(CURL_GLOBAL_DEFAULT);
    m_multi = curl_multi_init();
    curl_multi_setopt(m_multi, CURLMOPT_SOCKETFUNCTION, &HttpEngine::onSocketChange);
    curl_multi_setopt(m_multi, CURLMOPT_SOCKETDATA, this);
    curl_multi_setopt(m_multi, CURLMOPT_TIMERFUNCTION, &HttpEngine::onTimerChange);
    curl_multi_setopt(m_multi, CURLMOPT_TIMERDATA, this);

    for (QTimer *const timer : {&m_curlTimer, &m_silenceTimer}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    connect(&m_curlTimer, &QTimer::timeout, this, [this] { act(CURL_SOCKET_TIMEOUT, 0); });
    connect(&m_silenceTimer, &QTimer::timeout, this, [this] { endSilentOnes(); });
}

HttpEngine::~HttpEngine()
{
    while (!m_transfers.empty())
        end(m_transfers.begin()->first, CURLE_ABORTED_BY_CALLBACK);
    curl_multi_cleanup(m_multi);
    curl_global_cleanup();
}

void HttpEngine::start(const std::shared_ptr<HttpTransfer> &transfer)
{
    startHop(transfer);
    awaitSilence();
}

void HttpEngine::startHop(const std::shared_ptr<HttpTransfer> &transfer)
{
    CURL *const handle = transfer->prepare();
    if (!handle) {
        transfer->finish(CURLE_OUT_OF_MEMORY);
        return;
    }
    m_transfers[handle] = transfer;
    if (curl_multi_add_handle(m_multi, handle) != CURLM_OK)
        end(handle, CURLE_OUT_OF_MEMORY);
}

int HttpEngine::onSocketChange(CURL *handle, curl_socket_t socket, int what, void *self, void *)
{
    auto *const engine = static_cast<HttpEngine *>(self);
    if (what == CURL_POLL_REMOVE)
        engine->unwatch(socket);
    else
        engine->watch(handle, socket, what);
    return 0;
}

int HttpEngine::onTimerChange(CURLM *, long milliseconds, void *self)
{
    QTimer &timer = static_cast<HttpEngine *>(self)->m_curlTimer;
    if (milliseconds < 0)
        timer.stop();
    else
        timer.start(std::chrono::milliseconds(milliseconds));
    return 0;
}

void HttpEngine::watch(CURL *handle, curl_socket_t socket, int what)
{
    auto &[read, write, owner] = m_watches.try_emplace(socket, Watch{}).first->second;
    if (!read) {
        read = new QSocketNotifier(socket, QSocketNotifier::Read, this);
        write = new QSocketNotifier(socket, QSocketNotifier::Write, this);
        connect(read, &QSocketNotifier::activated, this, [this, socket] { act(socket, CURL_CSELECT_IN); });
        connect(write, &QSocketNotifier::activated, this, [this, socket] { act(socket, CURL_CSELECT_OUT); });
    }
    owner = handle;
    read->setEnabled(what & CURL_POLL_IN);
    write->setEnabled(what & CURL_POLL_OUT);
}

void HttpEngine::unwatch(curl_socket_t socket)
{
    const auto found = m_watches.find(socket);
    if (found == m_watches.end())
        return;
    // One of them may be emitting right now, and the socket may be closed and its number used again at once.
    for (QSocketNotifier *const notifier : {found->second.read, found->second.write}) {
        notifier->setEnabled(false);
        notifier->deleteLater();
    }
    m_watches.erase(found);
}

/// Lets libcurl see to a socket, or to its timers.
void HttpEngine::act(curl_socket_t socket, int events)
{
    if (const auto watched = m_watches.find(socket); watched != m_watches.end()) {
        if (const auto transfer = m_transfers.find(watched->second.handle); transfer != m_transfers.end())
            transfer->second->touch();
    }
    int running = 0;
    curl_multi_socket_action(m_multi, socket, events, &running);
    collectEnded();
}

void HttpEngine::collectEnded()
{
    int waiting = 0;
    while (const CURLMsg *const message = curl_multi_info_read(m_multi, &waiting)) {
        if (message->msg == CURLMSG_DONE)
            end(message->easy_handle, message->data.result);
    }
    awaitSilence();
}

/// Ends a hop, and with it the exchange unless the answer is a redirect to follow.
void HttpEngine::end(CURL *handle, CURLcode code)
{
    const auto found = m_transfers.find(handle);
    const std::shared_ptr<HttpTransfer> transfer = found->second;
    m_transfers.erase(found);
    curl_multi_remove_handle(m_multi, handle);
    if (transfer->followRedirect(code))
        startHop(transfer);
    else
        transfer->finish(code);
}

void HttpEngine::endSilentOnes()
{
    const auto now = HttpTransfer::Clock::now();
    std::vector<CURL *> silent;
    for (const auto &[handle, transfer] : m_transfers) {
        if (transfer->deadline() <= now)
            silent.push_back(handle);
    }
    for (CURL *const handle : silent)
        end(handle, CURLE_OPERATION_TIMEDOUT);
    awaitSilence();
}

/// Sets the timer for the exchange that is due first. A sign of life only moves its deadline, which the timer finds
/// when it fires, so bytes cost no timer.
void HttpEngine::awaitSilence()
{
    if (m_transfers.empty()) {
        m_silenceTimer.stop();
        return;
    }
    auto first = HttpTransfer::Clock::time_point::max();
    for (const auto &[handle, transfer] : m_transfers)
        first = std::min(first, transfer->deadline());
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(first - HttpTransfer::Clock::now());
    const auto wait = std::max(left, std::chrono::milliseconds(0));
    if (!m_silenceTimer.isActive() || wait < m_silenceTimer.remainingTimeAsDuration())
        m_silenceTimer.start(wait);
}

} // namespace ambrel
