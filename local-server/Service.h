#pragma once

#include "local-server/Accounts.h"
#include "local-server/LocalServerOptions.h"
#include "local-server/Messages.h"
#include "local-server/Neighbourhood.h"
#include "local-server/Portraits.h"

#include <QUrl>
#include <vector>

namespace ambrel::local {

struct Encounter;

/// What the server does, one operation per endpoint, on validated records. Refuses with ServiceError. One thread.
class Service
{
public:
    explicit Service(const LocalServerOptions &options);
    ~Service();

    /// The address that clients reach this server under; part of the download address.
    void setAddress(const QUrl &address) { m_address = address; }

    UserResponse signup(const RegisterRequest &request);
    UserProfileResponse login(const LoginRequest &request);
    UserResponse logout(const LogoutRequest &request);
    UserResponse updateLocation(const LocationUpdateRequest &request);
    CheckResponse check(const QString &userId, const QString &deviceId);
    DismissResponse dismiss(const DismissRequest &request);
    SeeMeResponse seeMe(const SeeMeRequest &request);
    SeeMeMessagesResponse seeMeMessages(const QString &userId, const QString &deviceId);
    HealthResponse health() const;
    AppVersionResponse appVersion() const;

private:
    Moment now() const { return m_options.clock(); }
    UserResponse acknowledgement() const;
    void report(Account &account, double latitude, double longitude, bool discoverable);
    Neighbourhood neighbourhoodAt(const Coordinates &place) const;
    /// Everybody whom `viewer` may meet, nearest first.
    std::vector<Encounter> around(const Account &viewer) const;
    MatchResult matchFrom(const Account &viewer, const Encounter &encounter);
    /// Lets the nearest neighbour within 100 m send a See Me of their own, when it is time for one.
    void letNeighboursCall(Account &account);
    QList<SeeMeMessage> takeMessages(Account &account);

    LocalServerOptions m_options;
    QUrl m_address;
    Accounts m_accounts;
    Messages m_messages;
    Neighbours m_neighbours;
    Portraits m_portraits;
};

} // namespace ambrel::local
