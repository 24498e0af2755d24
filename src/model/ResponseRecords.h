#pragma once

#include "model/PhotoText.h"
#include "model/Record.h"

#include <QList>
#include <QString>
#include <optional>

namespace ambrel {

/// The server's plain acknowledgement.
struct UserResponse
{
    bool ok = false;
    std::optional<QString> serverTime;

    static constexpr auto fields()
    {
        using R = UserResponse;
        return fieldList(field("ok", &R::ok), field("serverTime", &R::serverTime));
    }
    friend bool operator==(const UserResponse &, const UserResponse &) = default;
};

/// A user's profile as the server stores it.
struct UserProfile
{
    QString userId;
    QString displayName;
    std::optional<QString> email;
    std::optional<QString> phone;
    bool discoverable = false;
    double latitude = 0;  ///< degrees, north positive
    double longitude = 0; ///< degrees, east positive
    QList<qint64> aboutMe;
    QList<qint64> lookingFor;
    std::optional<QString> profileBio;
    std::optional<PhotoText> profilePhoto;
    QList<PhotoText> profilePhotos;

    static constexpr auto fields()
    {
        using R = UserProfile;
        return fieldList(field("userId", &R::userId), field("displayName", &R::displayName), field("email", &R::email),
                         field("phone", &R::phone), field("discoverable", &R::discoverable),
                         field("latitude", &R::latitude), field("longitude", &R::longitude),
                         field("aboutMe", &R::aboutMe), field("lookingFor", &R::lookingFor),
                         field("profileBio", &R::profileBio), field("profilePhoto", &R::profilePhoto),
                         field("profilePhotos", &R::profilePhotos));
    }
    friend bool operator==(const UserProfile &, const UserProfile &) = default;
};

/// The answer to a log-in.
struct UserProfileResponse
{
    UserProfile user;

    static constexpr auto fields()
    {
        using R = UserProfileResponse;
        return fieldList(field("user", &R::user));
    }
    friend bool operator==(const UserProfileResponse &, const UserProfileResponse &) = default;
};

/// One nearby user who matches.
struct MatchResult
{
    QString userId;
    QString displayName;
    double distanceMeters = 0;
    double aToB = 0;   ///< score from this user towards the match, percent
    double bToA = 0;   ///< score from the match towards this user, percent
    QString heatLevel; ///< the server's word for the proximity tier
    std::optional<QString> profileBio;
    std::optional<PhotoText> profilePhoto;
    QList<PhotoText> profilePhotos;
    std::optional<QString> updatedAt;

    /// Identifies the match in lists.
    const QString &id() const { return userId; }

    static constexpr auto fields()
    {
        using R = MatchResult;
        return fieldList(field("userId", &R::userId), field("displayName", &R::displayName),
                         field("distanceMeters", &R::distanceMeters), field("aToB", &R::aToB), field("bToA", &R::bToA),
                         field("heatLevel", &R::heatLevel), field("profileBio", &R::profileBio),
                         field("profilePhoto", &R::profilePhoto), field("profilePhotos", &R::profilePhotos),
                         field("updatedAt", &R::updatedAt));
    }
    friend bool operator==(const MatchResult &, const MatchResult &) = default;
};

/// One See Me message.
struct SeeMeMessage
{
    QString id;
    QString fromUserId;
    QString toUserId;
    QString body;
    std::optional<QString> createdAt;

    static constexpr auto fields()
    {
        using R = SeeMeMessage;
        return fieldList(field("id", &R::id), field("fromUserId", &R::fromUserId), field("toUserId", &R::toUserId),
                         field("body", &R::body), field("createdAt", &R::createdAt));
    }
    friend bool operator==(const SeeMeMessage &, const SeeMeMessage &) = default;
};

/// The people nearby and the messages waiting.
struct CheckResponse
{
    bool active = false;
    std::optional<qint64> thresholdPercent;
    std::optional<double> maxDistanceMeters;
    std::optional<QString> checkedAt;
    QList<MatchResult> matches; ///< in the server's order
    QList<SeeMeMessage> seeMeMessages;
    std::optional<QString> reason; ///< why nobody is shown

    static constexpr auto fields()
    {
        using R = CheckResponse;
        return fieldList(field("active", &R::active), field("thresholdPercent", &R::thresholdPercent),
                         field("maxDistanceMeters", &R::maxDistanceMeters), field("checkedAt", &R::checkedAt),
                         field("matches", &R::matches), field("seeMeMessages", &R::seeMeMessages),
                         field("reason", &R::reason));
    }
    friend bool operator==(const CheckResponse &, const CheckResponse &) = default;
};

/// The answer to a See Me that was sent.
struct SeeMeResponse
{
    bool ok = false;
    std::optional<SeeMeMessage> message; ///< as stored
    std::optional<QString> serverTime;

    static constexpr auto fields()
    {
        using R = SeeMeResponse;
        return fieldList(field("ok", &R::ok), field("message", &R::message), field("serverTime", &R::serverTime));
    }
    friend bool operator==(const SeeMeResponse &, const SeeMeResponse &) = default;
};

/// The inbox of See Me messages.
struct SeeMeMessagesResponse
{
    bool ok = false;
    QList<SeeMeMessage> seeMeMessages;
    std::optional<QString> checkedAt;

    static constexpr auto fields()
    {
        using R = SeeMeMessagesResponse;
        return fieldList(field("ok", &R::ok), field("seeMeMessages", &R::seeMeMessages),
                         field("checkedAt", &R::checkedAt));
    }
    friend bool operator==(const SeeMeMessagesResponse &, const SeeMeMessagesResponse &) = default;
};

/// The answer to a dismissal.
struct DismissResponse
{
    bool ok = false;
    std::optional<QString> dismissedUserId;
    std::optional<QString> serverTime;

    static constexpr auto fields()
    {
        using R = DismissResponse;
        return fieldList(field("ok", &R::ok), field("dismissedUserId", &R::dismissedUserId),
                         field("serverTime", &R::serverTime));
    }
    friend bool operator==(const DismissResponse &, const DismissResponse &) = default;
};

/// How the server is doing.
struct HealthResponse
{
    bool ok = false;
    std::optional<QString> name;
    std::optional<QString> version;
    std::optional<QString> serverTime;

    static constexpr auto fields()
    {
        using R = HealthResponse;
        return fieldList(field("ok", &R::ok), field("name", &R::name), field("version", &R::version),
                         field("serverTime", &R::serverTime));
    }
    friend bool operator==(const HealthResponse &, const HealthResponse &) = default;
};

/// The downloadable package of the companion phone application.
struct AppVersionResponse
{
    qint64 versionCode = 0;
    QString versionName;
    QString downloadUrl;
    bool apkAvailable = false;
    std::optional<qint64> apkSizeBytes;
    std::optional<QString> apkUpdatedAt;
    bool phoneVerificationAvailable = false;

    static constexpr auto fields()
    {
        using R = AppVersionResponse;
        return fieldList(field("versionCode", &R::versionCode), field("versionName", &R::versionName),
                         field("downloadUrl", &R::downloadUrl), field("apkAvailable", &R::apkAvailable),
                         field("apkSizeBytes", &R::apkSizeBytes), field("apkUpdatedAt", &R::apkUpdatedAt),
                         field("phoneVerificationAvailable", &R::phoneVerificationAvailable));
    }
    friend bool operator==(const AppVersionResponse &, const AppVersionResponse &) = default;
};

/// The body of a refusal.
struct APIErrorResponse
{
    QString error; ///< text to show as it stands

    static constexpr auto fields()
    {
        using R = APIErrorResponse;
        return fieldList(field("error", &R::error));
    }
    friend bool operator==(const APIErrorResponse &, const APIErrorResponse &) = default;
};

} // namespace ambrel
