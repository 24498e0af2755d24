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
    m_settings.sync();
    const QString file = m_settings.fileName();
    const auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner;
    if (m_settings.format() == QSettings::NativeFormat && QFile::exists(file))
        QFile::setPermissions(file, ownerOnly);
    return m_settings.status() == QSettings::NoError;
}

} // namespace ambrel
