#include "local-server/Accounts.h"

#include "local-server/People.h"
#include "local-server/ServiceError.h"

namespace ambrel::local {

namespace {

// A client that is live reports every five seconds.
constexpr std::chrono::seconds presence(30);
constexpr qsizetype maxAccounts = 10'000;

UserProfile profileFrom(const RegisterRequest &request)
{
    UserProfile profile;
    profile.userId = request.userId;
    profile.displayName = request.displayName;
    profile.email = request.email;
    profile.phone = request.phone;
    profile.discoverable = request.discoverable;
    profile.latitude = request.latitude;
    profile.longitude = request.longitude;
    profile.aboutMe = request.aboutMe;
    profile.lookingFor = request.lookingFor;
    profile.profileBio = request.profileBio;
    if (request.profilePhoto)
        profile.profilePhoto = request.profilePhoto->owned();
    for (const PhotoText &photo : request.profilePhotos)
        profile.profilePhotos.append(photo.owned());
    return profile;
}

/// What a profile holds in memory, to within its small fields.
qint64 storedBytes(const UserProfile &profile)
{
    qint64 bytes = profile.profileBio.value_or(QString()).size() * qint64(sizeof(QChar));
    if (profile.profilePhoto)
        bytes += qint64(profile.profilePhoto->view().size());
    for (const PhotoText &photo : profile.profilePhotos)
        bytes += qint64(photo.view().size());
    return bytes;
}

} // namespace

void Account::report(double latitude, double longitude, bool discoverable, Moment now)
{
    profile.latitude = latitude;
    profile.longitude = longitude;
    profile.discoverable = discoverable;
    reportedAt = now;
}

bool Account::isLive(Moment now) const
{
    return reportedAt && now - *reportedAt <= presence;
}

Account &Accounts::signUp(const RegisterRequest &request)
{
    const auto known = m_accounts.find(request.userId);
    const bool isTaken = known != m_accounts.end() && known->deviceId != request.deviceId;
    if (isTaken || isNeighbourId(request.userId))
        throw ServiceError(409, QStringLiteral("This user ID is taken."));
    UserProfile profile = profileFrom(request);
    const qint64 stored =
        m_storedBytes + storedBytes(profile) - (known == m_accounts.end() ? 0 : storedBytes(known->profile));
    if ((known == m_accounts.end() && m_accounts.size() >= maxAccounts) || stored > maxStoredBytes)
        throw ServiceError(503, QStringLiteral("This server is full."));

    m_storedBytes = stored;
    Account &account = m_accounts[request.userId];
    account.deviceId = request.deviceId;
    account.profile = std::move(profile);
    return account;
}

Account &Accounts::authenticate(const QString &userId, const QString &deviceId)
{
    const auto known = m_accounts.find(userId);
    if (known == m_accounts.end())
        throw ServiceError(404, QStringLiteral("Unknown user. Sign up first."));
    if (known->deviceId != deviceId)
        throw ServiceError(403, QStringLiteral("This user ID belongs to another device."));
    return *known;
}

const Account *Accounts::find(const QString &userId) const
{
    const auto known = m_accounts.constFind(userId);
    return known == m_accounts.constEnd() ? nullptr : &*known;
}

} // namespace ambrel::local
