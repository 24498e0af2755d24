#include "api/BaseUrl.h"
#include "state/AmbrelAppState.h"
#include "state/Coordinates.h"

#include <array>

namespace ambrel {

namespace {

constexpr double defaultLatitude = 39.0458;
constexpr double defaultLongitude = -84.5086;

/// A field that the preference store keeps from run to run.
struct Setting
{
    QString key;
    Published<AmbrelAppState, QString> AmbrelAppState::*field;
    QString fallback = {}; ///< what the field starts with when nothing is stored
};

const auto &userSettings()
{
    using State = AmbrelAppState;
    static const std::array settings{
        Setting{QStringLiteral("serverBaseURL"), &State::serverBaseURL, productionServer()},
        Setting{QStringLiteral("userId"), &State::userId},
        Setting{QStringLiteral("displayName"), &State::displayName},
        Setting{QStringLiteral("email"), &State::email},
        Setting{QStringLiteral("phone"), &State::phone},
        Setting{QStringLiteral("profileBio"), &State::profileBio},
        Setting{QStringLiteral("latitudeText"), &State::latitudeText, coordinateText(defaultLatitude)},
        Setting{QStringLiteral("longitudeText"), &State::longitudeText, coordinateText(defaultLongitude)},
    };
    return settings;
}

QString withoutSlashesAround(QStringView text)
{
    while (text.startsWith(u'/'))
        text = text.sliced(1);
    while (text.endsWith(u'/'))
        text.chop(1);
    return text.toString();
}

} // namespace

void AmbrelAppState::readSettings()
{
    for (const auto &[key, field, fallback] : userSettings())
        this->*field = m_settings.text(key, fallback);
}

void AmbrelAppState::saveSettings()
{
    serverBaseURL = withoutSlashesAround(normalizedBaseURL(serverBaseURL));
    api = std::make_shared<AmbrelAPI>(serverBaseURL);

    SettingsFile::Texts texts;
    for (const auto &[key, field, fallback] : userSettings())
        texts.insert(key, this->*field);
    m_settings.save(texts);
}

double AmbrelAppState::latitude() const
{
    return parsedCoordinate(latitudeText, defaultLatitude);
}

double AmbrelAppState::longitude() const
{
    return parsedCoordinate(longitudeText, defaultLongitude);
}

} // namespace ambrel
