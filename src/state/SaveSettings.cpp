#include "api/BaseUrl.h"
#include "state/AmbrelAppState.h"

namespace ambrel {

namespace {

QString withoutSlashesAround(QStringView text)
{
    while (text.startsWith(u'/'))
        text = text.sliced(1);
    while (text.endsWith(u'/'))
        text.chop(1);
    return text.toString();
}

} // namespace

void AmbrelAppState::saveSettings()
{
    serverBaseURL = withoutSlashesAround(normalizedBaseURL(serverBaseURL));
    api = std::make_shared<AmbrelAPI>(serverBaseURL);

    const std::pair<const char *, const Observable<QString> &> settings[] = {
        {"serverBaseURL", serverBaseURL},
        {"userId", userId},
        {"displayName", displayName},
        {"email", email},
        {"phone", phone},
        {"profileBio", profileBio},
        {"latitudeText", latitudeText},
        {"longitudeText", longitudeText},
    };
    for (const auto &[key, field] : settings)
        m_settings.setText(QString::fromLatin1(key), field);
    if (!m_settings.save())
        statusText = QStringLiteral("Your settings could not be saved.");
}

} // namespace ambrel
