#pragma once

#include "support/ScriptedConnection.h"
#include "support/ScriptedReply.h"

#include <QUrl>
#include <algorithm>
#include <condition_variable>
#include <list>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace ambrel {

/// An HTTP server on 127.0.0.1 that keeps every request waiting until a test answers that very one.
class PatientServer
{
public:
    PatientServer() : m_listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto *const generic = reinterpret_cast<sockaddr *>(&address);
        if (bind(m_listener, generic, size) != 0 || listen(m_listener, 64) != 0 ||
            getsockname(m_listener, generic, &size) != 0)
            qFatal("no port on the loopback interface");
        m_port = ntohs(address.sin_port);
        m_acceptor = std::thread([this] { acceptConnections(); });
    }
    ~PatientServer()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_isEnding = true;
            m_changed.notify_all();
            for (const auto &connection : m_connections)
                connection->interrupt();
        }
        shutdown(m_listener, SHUT_RDWR);
        m_acceptor.join();
        for (std::thread &thread : m_threads)
            thread.join();
        ::close(m_listener);
    }
    Q_DISABLE_COPY_MOVE(PatientServer)

    /// Without a "/" at its end.
    QString address() const { return QStringLiteral("http://127.0.0.1:%1").arg(m_port); }

    /// How many requests have ever come, after waiting `time` at most for the next to come.
    int count(std::chrono::microseconds time)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, time, [this, before = m_count] { return m_count != before; });
        return m_count;
    }

    /// Answers the oldest request that `isMeant` accepts; false when there is none.
    template <typename Predicate>
    bool answer(Predicate isMeant, const ScriptedReply &reply)
    {
        const std::lock_guard lock(m_mutex);
        const auto found = std::find_if(m_waiting.begin(), m_waiting.end(),
                                        [&](const Waiting &one) { return !one.reply && isMeant(one.request); });
        if (found == m_waiting.end())
            return false;
        found->reply = reply.steps().first().bytes;
        m_changed.notify_all();
        return true;
    }

    /// How many requests that `isMeant` accepts wait for an answer.
    template <typename Predicate>
    int waiting(Predicate isMeant)
    {
        const std::lock_guard lock(m_mutex);
        return static_cast<int>(std::count_if(m_waiting.begin(), m_waiting.end(),
                                              [&](const Waiting &one) { return !one.reply && isMeant(one.request); }));
    }

private:
    struct Waiting
    {
        ReceivedRequest request;
        std::optional<QByteArray> reply = {};
    };

    void acceptConnections()
    {
        while (true) {
            const int accepted = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
            const std::lock_guard lock(m_mutex);
            if (accepted < 0 || m_isEnding)
                return;
            m_connections.push_back(std::make_unique<ScriptedConnection>(accepted, nullptr));
            m_threads.emplace_back([this, &connection = *m_connections.back()] { serve(connection); });
        }
    }

    void serve(ScriptedConnection &connection)
    {
        while (auto request = connection.readRequest()) {
            std::unique_lock lock(m_mutex);
            const auto mine = m_waiting.insert(m_waiting.end(), Waiting{std::move(*request)});
            ++m_count;
            m_changed.notify_all();
            m_changed.wait(lock, [this, &mine] { return m_isEnding || mine->reply; });
            const auto reply = mine->reply;
            m_waiting.erase(mine);
            lock.unlock();
            if (!reply || !connection.write(*reply))
                return;
        }
    }

    int m_listener;
    quint16 m_port = 0;
    std::mutex m_mutex; // guards what follows
    std::condition_variable m_changed;
    bool m_isEnding = false;
    int m_count = 0;
    std::list<Waiting> m_waiting;
    std::list<std::unique_ptr<ScriptedConnection>> m_connections;
    std::list<std::thread> m_threads;
    std::thread m_acceptor;
};

} // namespace ambrel
