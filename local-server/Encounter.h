#pragma once

#include "local-server/Geography.h"

#include <QString>

namespace ambrel::local {

struct Account;

/// Somebody whom a user may meet: another user, or one of the simulated neighbours.
struct Encounter
{
    QString userId;
    const Account *account = nullptr; ///< of another user; null for a neighbour
    int neighbour = 0;                ///< number of the neighbour when there is no account
    double meters = 0;
};

/// Everybody scores at least this.
inline constexpr int leastScore = 55;

/// How well `to` suits `from`, in percent: the same for the same two users at all times.
double score(const QString &from, const QString &to);

/// How many of `available` photos somebody in `tier` gets to see.
qsizetype photosShown(qsizetype available, HeatTier tier);

} // namespace ambrel::local
