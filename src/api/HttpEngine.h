#pragma once

#include "api/HttpTransfer.h"

#include <QTimer>
#include <memory>
#include <unordered_map>

class QSocketNotifier;

namespace ambrel {

/// libcurl on the event loop of the thread that makes it: the sockets and the timer of every exchange under way.
/// Asleep while there is none.
class HttpEngine : public QObject
{
public:
    HttpEngine();
    /// Fails what is under way.
    ~HttpEngine() override;

    /// Begins an exchange and keeps it until its receiver has been called.
    void start(const std::shared_ptr<HttpTransfer> &transfer);

private:
    struct Watch
    {
        QSocketNotifier *read;
        QSocketNotifier *write;
        CURL *handle;
    };

    static int onSocketChange(CURL *handle, curl_socket_t socket, int what, void *self, void *);
    static int onTimerChange(CURLM *, long milliseconds, void *self);

    void watch(CURL *handle, curl_socket_t socket, int what);
    void unwatch(curl_socket_t socket);
    void act(curl_socket_t socket, int events);
    void collectEnded();
    void startHop(const std::shared_ptr<HttpTransfer> &transfer);
    void end(CURL *handle, CURLcode code);
    void endSilentOnes();
    void awaitSilence();

    CURLM *m_multi;
    QTimer m_curlTimer;
    QTimer m_silenceTimer;
    std::unordered_map<CURL *, std::shared_ptr<HttpTransfer>> m_transfers;
    std::unordered_map<curl_socket_t, Watch> m_watches;
};

} // namespace ambrel
