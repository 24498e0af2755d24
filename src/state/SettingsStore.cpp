#include "state/SettingsStore.h"

#include <QUuid>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <system_error>
#include <thread>

namespace ambrel {

namespace {

constexpr std::chrono::milliseconds maxWaitAtStart{20}; ///< for other writers; the window is not there yet
constexpr std::chrono::milliseconds maxWaitForOthers{500};
constexpr std::chrono::milliseconds maxWaitAtExit{1000};

QString deviceIdKey()
{
    return QStringLiteral("deviceId");
}

void complain(const SettingsFile &file, const char *what)
{
    const QString line = QStringLiteral("ambrel: the settings in %1 %2\n").arg(file.name(), QLatin1String(what));
    std::fputs(qPrintable(line), stderr);
}

} // namespace

/// The saves of one store, and the thread that carries them out while there are any.
class SettingsStore::Saving : public std::enable_shared_from_this<Saving>
{
public:
    Saving(SettingsFile file, QString deviceId) : m_file(std::move(file)), m_deviceId(std::move(deviceId)) {}

    void save(const SettingsFile::Texts &texts)
    {
        {
            const std::lock_guard lock(m_mutex);
            m_next = texts;
            if (std::exchange(m_isRunning, true))
                return;
        }
        try {
            std::thread([self = shared_from_this()] { self->run(); }).detach();
        } catch (const std::system_error &) {
            run(); // no thread is to be had
        }
    }

    void waitUntilSaved()
    {
        std::unique_lock lock(m_mutex);
        if (!m_hasEnded.wait_for(lock, maxWaitAtExit, [this] { return !m_isRunning; }))
            complain(m_file, "could not be saved in time");
    }

private:
    void run()
    {
        while (const auto texts = next()) {
            if (!hasWritten(*texts))
                complain(m_file, "could not be saved");
        }
    }

    bool hasWritten(const SettingsFile::Texts &texts) const
    {
        try {
            return m_file.write(texts, {{deviceIdKey(), m_deviceId}}, maxWaitForOthers);
        } catch (const std::bad_alloc &) {
            return false;
        }
    }

    std::optional<SettingsFile::Texts> next()
    {
        const std::lock_guard lock(m_mutex);
        m_isRunning = m_next.has_value();
        m_hasEnded.notify_all();
        return std::exchange(m_next, std::nullopt);
    }

    const SettingsFile m_file;
    const QString m_deviceId;
    std::mutex m_mutex; // guards what follows
    std::condition_variable m_hasEnded;
    std::optional<SettingsFile::Texts> m_next;
    bool m_isRunning = false;
};

SettingsStore::SettingsStore() : m_deviceId(QStringLiteral("mac-") + QUuid::createUuid().toString(QUuid::WithoutBraces))
{
    const SettingsFile file;
    auto stored = file.read();
    if (stored && !stored->contains(deviceIdKey())) {
        if (!file.write({}, {{deviceIdKey(), m_deviceId}}, maxWaitAtStart))
            complain(file, "could not be saved");
        stored = file.read(); // another client may have been first
    }
    if (!stored) {
        complain(file, "cannot be read, so nothing will be saved");
        return;
    }
    m_stored = *stored;
    m_deviceId = m_stored.value(deviceIdKey(), m_deviceId);
    m_saving = std::make_shared<Saving>(file, m_deviceId);
}

SettingsStore::~SettingsStore()
{
    if (m_saving)
        m_saving->waitUntilSaved();
}

void SettingsStore::save(const SettingsFile::Texts &texts)
{
    if (m_saving)
        m_saving->save(texts);
}

} // namespace ambrel
