#pragma once

#include <QDir>
#include <QSettings>
#include <QTemporaryDir>

namespace ambrel {

/// A folder of its own for the preference store of everything that this process makes from here on.
class SettingsFolder
{
public:
    SettingsFolder() { QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_directory.path()); }

    QString path(const QString &name = {}) const { return m_directory.filePath(name); }
    QString file() const { return path(QStringLiteral("Ambrel/Ambrel.conf")); }
    /// Makes the folder that the file stands in.
    void makeFolder() const { QDir(path()).mkdir(QStringLiteral("Ambrel")); }

private:
    QTemporaryDir m_directory;
};

/// The preference store as it is on the disk.
class StoredSettings : public QSettings
{
public:
    StoredSettings() : QSettings(QStringLiteral("Ambrel"), QStringLiteral("Ambrel")) {}

    static QString text(const QString &key) { return StoredSettings().value(key).toString(); }
    static QStringList keys()
    {
        QStringList all = StoredSettings().childKeys();
        all.sort();
        return all;
    }
};

/// The nine keys of a store that has been saved.
inline const QStringList &everyKey()
{
    static const QStringList keys{
        QStringLiteral("deviceId"),     QStringLiteral("displayName"),   QStringLiteral("email"),
        QStringLiteral("latitudeText"), QStringLiteral("longitudeText"), QStringLiteral("phone"),
        QStringLiteral("profileBio"),   QStringLiteral("serverBaseURL"), QStringLiteral("userId")};
    return keys;
}

} // namespace ambrel
