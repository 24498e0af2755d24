#include "state/SettingsStore.h"

#include <QFile>
#include <QStringList>

namespace ambrel {

SettingsStore::SettingsStore() : m_settings(QStringLiteral("Ambrel"), QStringLiteral("Ambrel"))
{
    m_settings.setFallbacksEnabled(false); // a device ID shared by all users of a machine would be wrong
}

QString SettingsStore::text(const QString &key, const QString &fallback) const
{
    const QVariant value = m_settings.value(key);
    if (!value.isValid())
        return fallback;
    // A comma in a hand-edited file makes a list of what was one text.
    return value.toStringList().join(QStringLiteral(", "));
}

bool SettingsStore::save()
{
    QSettings writer(m_settings.organizationName(), m_settings.applicationName()); // remembers no earlier failure
    writer.sync();
    const QString file = writer.fileName();
    const bool isPrivate = !QFile::exists(file) || QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
    // A line that could not be read when the file was opened is no failure to write it.
    return isPrivate && writer.status() != QSettings::AccessError;
}

} // namespace ambrel
