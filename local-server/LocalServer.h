#pragma once

#include "local-server/LocalServerOptions.h"

#include <QHostAddress>
#include <QUrl>
#include <memory>

namespace ambrel {

/// A whole Ambrel server in this process, in memory, with people in it. Lives on the thread that makes it, which
/// needs an event loop and an application object. Destroying it closes every connection.
class LocalServer
{
public:
    explicit LocalServer(const LocalServerOptions &options = {});
    ~LocalServer();
    LocalServer(const LocalServer &) = delete;
    LocalServer &operator=(const LocalServer &) = delete;

    /// Starts listening and returns the port; `port` 0 takes any free one. Returns 0 when it fails.
    quint16 listen(const QHostAddress &address = QHostAddress::LocalHost, quint16 port = 0);
    /// Why listen() failed: one sentence for the user.
    QString errorText() const { return m_errorText; }
    /// The base URL, ending in "/"; empty before listen() has succeeded.
    QUrl url() const { return m_url; }

private:
    class Private;
    std::unique_ptr<Private> d;
    QString m_errorText;
    QUrl m_url;
};

} // namespace ambrel
