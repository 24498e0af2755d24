#include "api/HttpEngine.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace ambrel {

namespace {

/// To one server at the same time, as browsers have it. A server that only drips would otherwise collect a connection
/// from every cycle.
constexpr long maxConnections = 6;

} // namespace

HttpEngine::HttpEngine() : m_curl(Curl::library())
{
    if (!m_curl.isLoaded() || m_curl.global_init(CURL_GLOBAL_DEFAULT) != CURLE_OK) {
        m_failure = CURLE_FAILED_INIT;
        return;
    }
    m_multi = m_curl.multi_init();
    if (!m_multi || m_curl.multi_wakeup(m_multi) != CURLM_OK) // the latter takes a descriptor
        m_failure = CURLE_NO_CONNECTION_AVAILABLE;
    m_curl.multi_setopt(m_multi, CURLMOPT_SOCKETFUNCTION, &HttpEngine::onSocketChange);
    m_curl.multi_setopt(m_multi, CURLMOPT_SOCKETDATA, this);
    m_curl.multi_setopt(m_multi, CURLMOPT_MAXCONNECTS, maxConnections);
}

HttpEngine::~HttpEngine()
{
    for (const auto &transfer : std::exchange(m_waiting, {}))
        transfer->finish(CURLE_ABORTED_BY_CALLBACK);
    while (!m_transfers.empty())
        end(m_transfers.begin()->first, CURLE_ABORTED_BY_CALLBACK);
    if (m_failure == CURLE_FAILED_INIT)
        return;
    m_curl.multi_cleanup(m_multi);
    m_curl.global_cleanup();
}

void HttpEngine::start(std::shared_ptr<HttpTransfer> transfer)
{
    if (!isUsable()) {
        transfer->finish(m_failure);
        return;
    }
    m_waiting.push_back(std::move(transfer));
    startWaiting();
}

/// Begins whatever has a free connection to its server.
void HttpEngine::startWaiting()
{
    for (auto next = m_waiting.begin(); next != m_waiting.end();) {
        if (isBusy((*next)->server())) {
            ++next;
            continue;
        }
        const std::shared_ptr<HttpTransfer> transfer = *next;
        next = m_waiting.erase(next);
        CURL *const handle = transfer->prepare();
        if (handle && m_curl.multi_add_handle(m_multi, handle) == CURLM_OK)
            m_transfers[handle] = transfer;
        else
            transfer->finish(CURLE_OUT_OF_MEMORY);
    }
}

bool HttpEngine::isBusy(const QByteArray &server) const
{
    return std::count_if(m_transfers.begin(), m_transfers.end(), [&server](const auto &transfer) {
               return transfer.second->server() == server;
           }) >= maxConnections;
}

void HttpEngine::wake()
{
    m_curl.multi_wakeup(m_multi);
}

int HttpEngine::onSocketChange(CURL *handle, curl_socket_t socket, int what, void *self, void *)
{
    auto &watches = static_cast<HttpEngine *>(self)->m_watches;
    const int events = (what & CURL_POLL_IN ? CURL_WAIT_POLLIN : 0) | (what & CURL_POLL_OUT ? CURL_WAIT_POLLOUT : 0);
    if (what == CURL_POLL_REMOVE)
        watches.erase(socket);
    else
        watches[socket] = {handle, static_cast<short>(events)};
    return 0;
}

void HttpEngine::turn()
{
    // libcurl waits for these sockets anyway; given once more, they tell which of them have news.
    std::vector<curl_waitfd> sockets;
    for (const auto &[socket, watch] : m_watches)
        sockets.push_back({socket, watch.events, 0});
    m_curl.multi_poll(m_multi, sockets.data(), static_cast<unsigned>(sockets.size()), maxSleep(), nullptr);
    for (const curl_waitfd &socket : sockets) {
        if (socket.revents)
            act(socket);
    }
    act({CURL_SOCKET_TIMEOUT, 0, 0});
    collectEnded();
    endSilentOnes();
    startWaiting();
}

/// Lets libcurl see to a socket, or to its timers.
void HttpEngine::act(const curl_waitfd &ready)
{
    if (const auto watched = m_watches.find(ready.fd); watched != m_watches.end()) {
        if (const auto transfer = m_transfers.find(watched->second.handle); transfer != m_transfers.end())
            transfer->second->touch();
    }
    const int events = (ready.revents & CURL_WAIT_POLLIN ? CURL_CSELECT_IN : 0) |
                       (ready.revents & CURL_WAIT_POLLOUT ? CURL_CSELECT_OUT : 0);
    int running = 0;
    m_curl.multi_socket_action(m_multi, ready.fd, events, &running);
}

void HttpEngine::collectEnded()
{
    int waiting = 0;
    while (const CURLMsg *const message = m_curl.multi_info_read(m_multi, &waiting)) {
        if (message->msg == CURLMSG_DONE)
            end(message->easy_handle, message->data.result);
    }
}

/// Ends a hop, and with it the exchange unless the answer is a redirect to follow.
void HttpEngine::end(CURL *handle, CURLcode code)
{
    const auto found = m_transfers.find(handle);
    const std::shared_ptr<HttpTransfer> transfer = found->second;
    m_transfers.erase(found);
    m_curl.multi_remove_handle(m_multi, handle);
    if (transfer->followRedirect(code))
        m_waiting.push_front(transfer);
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
}

/// How long the sleep may last: until the first exchange has been silent for too long.
int HttpEngine::maxSleep() const
{
    std::chrono::milliseconds sleep{std::numeric_limits<int>::max()};
    const auto now = HttpTransfer::Clock::now();
    for (const auto &[handle, transfer] : m_transfers)
        sleep = std::min(sleep, std::chrono::ceil<std::chrono::milliseconds>(transfer->deadline() - now));
    return static_cast<int>(std::max(sleep.count(), std::chrono::milliseconds::rep{0}));
}

} // namespace ambrel
