#pragma once

#include "api/HttpTransfer.h"

#include <deque>
#include <memory>
#include <unordered_map>

namespace ambrel {

/// libcurl and every exchange that it is given, under way or waiting for its turn. Network thread, except for `wake`.
class HttpEngine
{
public:
    HttpEngine();
    /// Fails what is under way and what waits.
    ~HttpEngine();
    HttpEngine(const HttpEngine &) = delete;
    HttpEngine &operator=(const HttpEngine &) = delete;

    /// False when libcurl is missing or no descriptor is left for it: then every exchange fails at once.
    bool isUsable() const { return m_failure == CURLE_OK; }
    /// Takes an exchange and keeps it until its receiver has been called.
    void start(std::shared_ptr<HttpTransfer> transfer);
    /// Sleeps until there is something to do or `wake` is called, then does it.
    void turn();
    /// Ends the sleep. Any thread.
    void wake();

private:
    struct Watch
    {
        CURL *handle;
        short events;
    };

    static int onSocketChange(CURL *handle, curl_socket_t socket, int what, void *self, void *);
    int maxSleep() const;
    void act(const curl_waitfd &ready);
    void collectEnded();
    void startWaiting();
    bool isBusy(const QByteArray &server) const;
    void end(CURL *handle, CURLcode code);
    void endSilentOnes();

    const Curl &m_curl;
    CURLM *m_multi = nullptr;
    CURLcode m_failure = CURLE_OK;
    std::deque<std::shared_ptr<HttpTransfer>> m_waiting;
    std::unordered_map<CURL *, std::shared_ptr<HttpTransfer>> m_transfers; ///< under way
    std::unordered_map<curl_socket_t, Watch> m_watches;
};

} // namespace ambrel
