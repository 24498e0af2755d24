#include "local-server/Validation.h"

#include "local-server/ServiceError.h"

#include <cmath>

namespace ambrel::local {

namespace {

constexpr qsizetype longestId = 200;
constexpr qsizetype longestName = 200;
constexpr qsizetype longestContact = 320;
constexpr qsizetype longestBio = 10'000;
constexpr qsizetype mostCodes = 100;
constexpr qsizetype mostPhotos = 8;

[[noreturn]] void refuse(const char *key, const char *problem)
{
    throw ServiceError(400, u'"' + QLatin1String(key) + QStringLiteral("\" ") + QLatin1String(problem));
}

void requireLength(const char *key, qsizetype length, qsizetype most)
{
    if (length > most)
        refuse(key, "is too long.");
}

void requireText(const char *key, const QString &text, qsizetype most)
{
    requireLength(key, text.size(), most);
    if (text.trimmed().isEmpty())
        refuse(key, "must not be blank.");
}

void requireDegrees(const char *key, double degrees, double most)
{
    if (!std::isfinite(degrees) || std::abs(degrees) > most)
        refuse(key, most == 90 ? "must be between -90 and 90." : "must be between -180 and 180.");
}

void requireUser(const QString &userId, const QString &deviceId)
{
    validateId("userId", userId);
    validateId("deviceId", deviceId);
}

void requirePosition(double latitude, double longitude)
{
    requireDegrees("latitude", latitude, 90);
    requireDegrees("longitude", longitude, 180);
}

} // namespace

void validateId(const char *key, const QString &id)
{
    requireText(key, id, longestId);
}

void validate(const RegisterRequest &request)
{
    requireUser(request.userId, request.deviceId);
    requireText("displayName", request.displayName, longestName);
    requireLength("email", request.email.size(), longestContact);
    requireLength("phone", request.phone.size(), longestContact);
    requirePosition(request.latitude, request.longitude);
    requireLength("aboutMe", request.aboutMe.size(), mostCodes);
    requireLength("lookingFor", request.lookingFor.size(), mostCodes);
    requireLength("profileBio", request.profileBio.value_or(QString()).size(), longestBio);
    requireLength("profilePhotos", request.profilePhotos.size(), mostPhotos);
}

void validate(const LocationUpdateRequest &request)
{
    requireUser(request.userId, request.deviceId);
    requirePosition(request.latitude, request.longitude);
}

void validate(const LoginRequest &request)
{
    requireUser(request.userId, request.deviceId);
}

void validate(const LogoutRequest &request)
{
    requireUser(request.userId, request.deviceId);
}

void validate(const DismissRequest &request)
{
    requireUser(request.userId, request.deviceId);
    validateId("dismissedUserId", request.dismissedUserId);
}

void validate(const SeeMeRequest &request)
{
    requireUser(request.userId, request.deviceId);
    validateId("targetUserId", request.targetUserId);
}

} // namespace ambrel::local
