#include "state/AmbrelAppState.h"
#include "state/Coordinates.h"
#include "state/ErrorDescription.h"
#include "state/UserIdSuggestion.h"

namespace ambrel {

QCoro::Task<> AmbrelAppState::signup()
{
    const auto self = shared_from_this();
    const QString name = displayName->trimmed();
    if (name.isEmpty()) {
        statusText = QStringLiteral("Add a display name.");
        co_return;
    }
    isBusy = true;
    if (userId->isEmpty())
        userId = suggestedUserId(name);

    const RegisterRequest request = registration(name);
    const auto client = api;
    try {
        co_await client->call(endpoints::signup, request);
        saveSettings();
        statusText = QStringLiteral("Signed up.");
        startLive();
    } catch (...) {
        statusText = currentErrorDescription();
    }
    isBusy = false;
}

RegisterRequest AmbrelAppState::registration(const QString &name) const
{
    const QList<qint64> everyCode{0, 1, 2}; // there is no editor for these yet
    return {.userId = userId,
            .deviceId = deviceId,
            .displayName = name,
            .email = email,
            .phone = phone,
            .latitude = latitude(),
            .longitude = longitude(),
            .discoverable = discoverable,
            .aboutMe = everyCode,
            .lookingFor = everyCode,
            .profileBio = profileBio.value(),
            .profilePhoto = std::nullopt,
            .profilePhotos = {}};
}

QCoro::Task<> AmbrelAppState::login()
{
    const auto self = shared_from_this();
    if (!isSignedIn()) {
        statusText = QStringLiteral("Enter your user ID.");
        co_return;
    }
    isBusy = true;

    const LoginRequest request{userId, deviceId};
    const auto client = api;
    try {
        const auto reply = co_await client->call(endpoints::login, request);
        adopt(reply.user);
        saveSettings();
        statusText = QStringLiteral("Logged in.");
    } catch (...) {
        statusText = currentErrorDescription();
    }
    isBusy = false;
}

void AmbrelAppState::adopt(const UserProfile &profile)
{
    displayName = profile.displayName;
    email = profile.email.value_or(email);
    phone = profile.phone.value_or(phone);
    profileBio = profile.profileBio.value_or(profileBio);
    discoverable = profile.discoverable;
    latitudeText = coordinateText(profile.latitude);
    longitudeText = coordinateText(profile.longitude);
}

} // namespace ambrel
