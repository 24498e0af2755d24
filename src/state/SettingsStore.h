#pragma once

#include <QSettings>
#include <QString>

namespace ambrel {

/// The per-user preference store: text values by key. Main thread only.
class SettingsStore
{
public:
    SettingsStore();

    bool contains(const QString &key) const { return m_settings.value(key).isValid(); }
    /// The stored text, or `fallback` when there is none.
    QString text(const QString &key, const QString &fallback = {}) const;
    void setText(const QString &key, const QString &value) { m_settings.setValue(key, value); }
    /// Writes what was set to the disk, readable by this user only. False when that failed.
    bool save();

private:
    QSettings m_settings;
};

} // namespace ambrel
