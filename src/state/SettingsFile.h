#pragma once

#include <QMap>
#include <QString>
#include <chrono>
#include <optional>

namespace ambrel {

/// Where the toolkit's settings store keeps the settings of this user and application. Everything here may block for
/// as long as the disk does. Any thread; several processes may use the settings at once.
class SettingsFile
{
public:
    using Texts = QMap<QString, QString>; ///< setting texts by key

    SettingsFile();

    /// What is stored; none when there is something that cannot be read.
    std::optional<Texts> read() const;
    /// Stores `texts`, and of `onlyIfAbsent` what has no value yet; what else is stored stays. The settings are
    /// replaced as a whole, even when the power fails, and never where they cannot be read. Waits at most `maxWait` for
    /// others to finish writing and goes on without them. False when nothing was written.
    bool write(const Texts &texts, const Texts &onlyIfAbsent, std::chrono::milliseconds maxWait) const;

    /// For a message to the user.
    QString name() const;

private:
    QString m_path; ///< empty where the platform has a service for settings instead of a file
};

} // namespace ambrel
