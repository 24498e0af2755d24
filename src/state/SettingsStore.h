#pragma once

#include "state/SettingsFile.h"

#include <memory>

namespace ambrel {

/// The per-user preference store: read once, written in the background. When it cannot be read it keeps nothing of
/// this run, and what is there stays as it is; each failure is one line on standard error. Main thread only.
class SettingsStore
{
public:
    /// Reads everything, and makes and stores a device ID on first launch.
    SettingsStore();
    /// Waits for the last save to reach the disk, but not for a disk that hangs: a second at most.
    ~SettingsStore();
    Q_DISABLE_COPY_MOVE(SettingsStore)

    /// The text that was stored at start, or `fallback` when there was none.
    QString text(const QString &key, const QString &fallback) const { return m_stored.value(key, fallback); }
    const QString &deviceId() const { return m_deviceId; }

    /// Stores `texts`, and the device ID should it have gone, on a thread of its own. While one save runs only the
    /// latest of those that follow is kept.
    void save(const SettingsFile::Texts &texts);

private:
    class Saving;

    QString m_deviceId;
    SettingsFile::Texts m_stored;
    std::shared_ptr<Saving>
        m_saving; ///< null when nothing is to be saved; shared with the thread, which may outlive us
};

} // namespace ambrel
