#pragma once

#include "model/PhotoText.h"
#include "model/Record.h"

#include <QList>
#include <QString>
#include <optional>

namespace ambrel {

/// The user's account and profile, as sent on sign-up.
struct RegisterRequest
{
    QString userId;
    QString deviceId;
    QString displayName;
    QString email;
    QString phone;
    double latitude = 0;  ///< degrees, north positive
    double longitude = 0; ///< degrees, east positive
    bool discoverable = false;
    QList<qint64> aboutMe;
    QList<qint64> lookingFor;
    std::optional<QString> profileBio;
    std::optional<PhotoText> profilePhoto;
    QList<PhotoText> profilePhotos;

    static constexpr auto fields()
    {
        using R = RegisterRequest;
        return fieldList(field("userId", &R::userId), field("deviceId", &R::deviceId),
                         field("displayName", &R::displayName), field("email", &R::email), field("phone", &R::phone),
                         field("latitude", &R::latitude), field("longitude", &R::longitude),
                         field("discoverable", &R::discoverable), field("aboutMe", &R::aboutMe),
                         field("lookingFor", &R::lookingFor), field("profileBio", &R::profileBio),
                         field("profilePhoto", &R::profilePhoto), field("profilePhotos", &R::profilePhotos));
    }
    friend bool operator==(const RegisterRequest &, const RegisterRequest &) = default;
};

/// The periodic report of the user's position.
struct LocationUpdateRequest
{
    QString userId;
    QString deviceId;
    double latitude = 0;  ///< degrees, north positive
    double longitude = 0; ///< degrees, east positive
    bool discoverable = false;

    static constexpr auto fields()
    {
        using R = LocationUpdateRequest;
        return fieldList(field("userId", &R::userId), field("deviceId", &R::deviceId), field("latitude", &R::latitude),
                         field("longitude", &R::longitude), field("discoverable", &R::discoverable));
    }
    friend bool operator==(const LocationUpdateRequest &, const LocationUpdateRequest &) = default;
};

/// Asks for the stored profile of a user.
struct LoginRequest
{
    QString userId;
    QString deviceId;

    static constexpr auto fields()
    {
        using R = LoginRequest;
        return fieldList(field("userId", &R::userId), field("deviceId", &R::deviceId));
    }
    friend bool operator==(const LoginRequest &, const LoginRequest &) = default;
};

/// Ends the user's presence on the server.
struct LogoutRequest
{
    QString userId;
    QString deviceId;

    static constexpr auto fields()
    {
        using R = LogoutRequest;
        return fieldList(field("userId", &R::userId), field("deviceId", &R::deviceId));
    }
    friend bool operator==(const LogoutRequest &, const LogoutRequest &) = default;
};

/// Asks the server to stop showing one match.
struct DismissRequest
{
    QString userId;
    QString deviceId;
    QString dismissedUserId;

    static constexpr auto fields()
    {
        using R = DismissRequest;
        return fieldList(field("userId", &R::userId), field("deviceId", &R::deviceId),
                         field("dismissedUserId", &R::dismissedUserId));
    }
    friend bool operator==(const DismissRequest &, const DismissRequest &) = default;
};

/// Sends a See Me message to one match.
struct SeeMeRequest
{
    QString userId;
    QString deviceId;
    QString targetUserId;

    static constexpr auto fields()
    {
        using R = SeeMeRequest;
        return fieldList(field("userId", &R::userId), field("deviceId", &R::deviceId),
                         field("targetUserId", &R::targetUserId));
    }
    friend bool operator==(const SeeMeRequest &, const SeeMeRequest &) = default;
};

} // namespace ambrel
