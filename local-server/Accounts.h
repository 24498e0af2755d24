#pragma once

#include "local-server/Geography.h"
#include "local-server/Neighbourhood.h"
#include "local-server/Time.h"
#include "model/RequestRecords.h"
#include "model/ResponseRecords.h"

#include <QHash>
#include <QSet>
#include <optional>

namespace ambrel::local {

/// Somebody who signed up, and the one device that may speak for them.
struct Account
{
    QString deviceId;
    UserProfile profile;
    std::optional<Moment> reportedAt; ///< of the last position; none before the first and after a log-out
    QSet<QString> dismissed;
    std::optional<Neighbourhood> neighbourhood; ///< the simulated people around the user, once there is a position

    Coordinates position() const { return {profile.latitude, profile.longitude}; }
    /// Takes a position reported at `now`.
    void report(double latitude, double longitude, bool discoverable, Moment now);
    /// True while the last position is recent enough for the user to be out there.
    bool isLive(Moment now) const;
};

/// Everybody who signed up, by user ID.
class Accounts
{
public:
    /// How many bytes the profiles of all accounts may hold together.
    static constexpr qint64 maxStoredBytes = 256LL * 1024 * 1024;

    /// Makes the account, or updates it when the same device asks. Throws ServiceError when the ID is taken or the
    /// server is full.
    Account &signUp(const RegisterRequest &request);
    /// The account of `userId`. Throws ServiceError for an unknown user and for another device.
    Account &authenticate(const QString &userId, const QString &deviceId);
    /// The account of `userId`, or nullptr.
    const Account *find(const QString &userId) const;
    const QHash<QString, Account> &all() const { return m_accounts; }

private:
    QHash<QString, Account> m_accounts;
    qint64 m_storedBytes = 0;
};

} // namespace ambrel::local
