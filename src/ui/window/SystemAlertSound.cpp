#include "ui/window/SystemAlertSound.h"

#include "tasks/Worker.h"

#include <QApplication>
#include <QLibrary>
#include <mutex>

#if __has_include(<canberra.h>)
#include <canberra.h>
#endif

namespace ambrel {

#if __has_include(<canberra.h>)

/// The XDG sound theme, through libcanberra. Any thread.
class SystemAlertSound::Player
{
public:
    ~Player()
    {
        if (m_context)
            m_destroy(m_context);
    }

    /// False when no sound can be heard.
    bool play()
    {
        const std::lock_guard lock(m_mutex);
        if (!m_context && !open())
            return false;
        return m_play(m_context, 0, CA_PROP_EVENT_ID, "message-new-instant", CA_PROP_EVENT_DESCRIPTION,
                      "See Me message received", nullptr) == CA_SUCCESS;
    }

private:
    bool open()
    {
        QLibrary library(QStringLiteral("canberra"), 0);
        const auto create = reinterpret_cast<decltype(&ca_context_create)>(library.resolve("ca_context_create"));
        m_play = reinterpret_cast<decltype(m_play)>(library.resolve("ca_context_play"));
        m_destroy = reinterpret_cast<decltype(m_destroy)>(library.resolve("ca_context_destroy"));
        return create && m_play && m_destroy && create(&m_context) == CA_SUCCESS;
    }

    std::mutex m_mutex;
    ca_context *m_context = nullptr;
    decltype(&ca_context_play) m_play = nullptr;
    decltype(&ca_context_destroy) m_destroy = nullptr;
};

#else

class SystemAlertSound::Player
{
public:
    bool play() { return false; }
};

#endif

SystemAlertSound::SystemAlertSound() : m_player(std::make_shared<Player>()) {}

SystemAlertSound::~SystemAlertSound() = default;

void SystemAlertSound::play()
{
    const bool isStarted = startOnWorker([player = m_player, home = CallQueue::ofThisThread()] {
        if (!player->play())
            home->post([] { QApplication::beep(); });
    });
    if (!isStarted)
        QApplication::beep();
}

} // namespace ambrel
