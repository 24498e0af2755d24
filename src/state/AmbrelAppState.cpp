#include "state/AmbrelAppState.h"

#include "api/BaseUrl.h"
#include "state/Coordinates.h"

#include <QUuid>

namespace ambrel {

namespace {

constexpr double defaultLatitude = 39.0458;
constexpr double defaultLongitude = -84.5086;

/// The stored device ID; made and stored on first launch.
QString storedDeviceId(SettingsStore &settings)
{
    const QString key = QStringLiteral("deviceId");
    if (!settings.contains(key)) {
        settings.setText(key, QStringLiteral("mac-") + QUuid::createUuid().toString(QUuid::WithoutBraces));
        settings.save();
    }
    return settings.text(key);
}

} // namespace

std::shared_ptr<AmbrelAppState> AmbrelAppState::create(AlertSound &sound, const LiveTimings &timings)
{
    return std::shared_ptr<AmbrelAppState>(new AmbrelAppState(sound, timings)); // owned by the pointer
}

AmbrelAppState::AmbrelAppState(AlertSound &sound, const LiveTimings &timings)
    : serverBaseURL(this, m_settings.text(QStringLiteral("serverBaseURL"), productionServer())),
      userId(this, m_settings.text(QStringLiteral("userId"))),
      displayName(this, m_settings.text(QStringLiteral("displayName"))),
      email(this, m_settings.text(QStringLiteral("email"))), phone(this, m_settings.text(QStringLiteral("phone"))),
      profileBio(this, m_settings.text(QStringLiteral("profileBio"))),
      latitudeText(this, m_settings.text(QStringLiteral("latitudeText"), coordinateText(defaultLatitude))),
      longitudeText(this, m_settings.text(QStringLiteral("longitudeText"), coordinateText(defaultLongitude))),
      m_sound(sound), m_timings(timings), deviceId(storedDeviceId(m_settings)),
      api(std::make_shared<AmbrelAPI>(serverBaseURL))
{
}

AmbrelAppState::~AmbrelAppState() = default;

double AmbrelAppState::latitude() const
{
    return parsedCoordinate(latitudeText, defaultLatitude);
}

double AmbrelAppState::longitude() const
{
    return parsedCoordinate(longitudeText, defaultLongitude);
}

bool AmbrelAppState::isSignedIn() const
{
    return !userId->trimmed().isEmpty();
}

void AmbrelAppState::shutDown()
{
    cancelLoops();
    m_exit.request_stop();
}

} // namespace ambrel
