#pragma once

#include "local-server/Look.h"

#include <QString>
#include <optional>

namespace ambrel::local {

/// Somebody who may live in a simulated neighbourhood.
struct Person
{
    QStringView id;
    QStringView name;
    QStringView bio;
    QStringView question; ///< what a See Me of their own says
    QStringView answer;   ///< what the answer to a See Me says
    int photoCount;       ///< 1 to 4
    Look look;
};

/// How many different people there are; a larger neighbourhood meets their namesakes.
int personCount();
/// The person behind neighbour number `index`.
const Person &personAt(int index);
/// The user ID of neighbour number `index`.
QString neighbourId(int index);
/// The number of the neighbour with this user ID, when it is below `people`.
std::optional<int> neighbourWithId(const QString &userId, int people);
/// True for every ID that some neighbour may have; nobody can sign up with one.
bool isNeighbourId(const QString &userId);

} // namespace ambrel::local
