#include "ui/window/SystemAlertSound.h"

#include <QApplication>
#include <QLibrary>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

#ifdef AMBREL_HAS_CANBERRA
#include <canberra.h>
#endif

namespace ambrel {

namespace {

#ifdef AMBREL_HAS_CANBERRA

/// The XDG sound theme, through libcanberra: loaded for the first sound, and never unloaded, because the program may
/// end in the middle of a call. Used by one thread.
class SoundTheme
{
public:
    SoundTheme() = default;
    ~SoundTheme()
    {
        if (m_context)
            m_destroy(m_context);
    }
    Q_DISABLE_COPY_MOVE(SoundTheme)

    /// False when no sound can be heard. May block for as long as the sound server likes.
    bool play()
    {
        if (!m_context && !open())
            return false;
        return m_play(m_context, 0, CA_PROP_EVENT_ID, "message-new-instant", CA_PROP_EVENT_DESCRIPTION,
                      "See Me message received", nullptr) == CA_SUCCESS;
    }

private:
    bool open()
    {
        QLibrary library(QStringLiteral("canberra"), 0);
        library.setLoadHints(QLibrary::PreventUnloadHint);
        const auto create = reinterpret_cast<decltype(&ca_context_create)>(library.resolve("ca_context_create"));
        m_play = reinterpret_cast<decltype(m_play)>(library.resolve("ca_context_play"));
        m_destroy = reinterpret_cast<decltype(m_destroy)>(library.resolve("ca_context_destroy"));
        return create && m_play && m_destroy && create(&m_context) == CA_SUCCESS;
    }

    ca_context *m_context = nullptr;
    decltype(&ca_context_play) m_play = nullptr;
    decltype(&ca_context_destroy) m_destroy = nullptr;
};

#else

struct SoundTheme
{
    bool play() { return false; }
};

#endif

} // namespace

/// What the main thread and the thread that plays share; the one that ends last frees it.
class SystemAlertSound::Player
{
public:
    /// `beep` is a timer of the main thread's that beeps; it must be there until `end`.
    explicit Player(QTimer &beep) : m_beep(beep) {}

    void order()
    {
        const std::lock_guard lock(m_mutex);
        m_isOrdered = true;
        m_changed.notify_one();
    }
    void end()
    {
        const std::lock_guard lock(m_mutex);
        m_hasEnded = true;
        m_changed.notify_one();
    }

    /// The thread that plays: plays what is ordered until `end`.
    void run()
    {
        SoundTheme theme;
        while (waitForOrder()) {
            if (!theme.play())
                beep();
        }
    }

private:
    bool waitForOrder()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_isOrdered || m_hasEnded; });
        m_isOrdered = false;
        return !m_hasEnded;
    }
    void beep()
    {
        const std::lock_guard lock(m_mutex);
        if (!m_hasEnded) // the timer is there until then
            QMetaObject::invokeMethod(&m_beep, "start", Qt::QueuedConnection);
    }

    QTimer &m_beep;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isOrdered = false;
    bool m_hasEnded = false;
};

SystemAlertSound::SystemAlertSound()
{
    m_beep.setSingleShot(true);
    QObject::connect(&m_beep, &QTimer::timeout, &QApplication::beep);
}

SystemAlertSound::~SystemAlertSound()
{
    if (m_player)
        m_player->end();
}

void SystemAlertSound::play()
{
    if (!m_player) {
        auto player = std::make_shared<Player>(m_beep);
        try {
            std::thread([player] { player->run(); }).detach();
        } catch (const std::system_error &) { // no thread to be had
            QApplication::beep();
            return;
        }
        m_player = std::move(player);
    }
    m_player->order();
}

} // namespace ambrel
