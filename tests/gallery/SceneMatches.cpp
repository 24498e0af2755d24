#include "gallery/SceneMatches.h"

#include "local-server/Encounter.h"
#include "local-server/People.h"
#include "local-server/Portraits.h"

#include <array>

namespace ambrel {

MatchResult personAway(int number, double meters)
{
    static local::Portraits portraits;
    const local::Person &person = local::personAt(number);
    const local::HeatTier tier = local::heatTier(meters);

    MatchResult match;
    match.userId = local::neighbourId(number);
    match.displayName = person.name.toString();
    match.distanceMeters = meters;
    match.aToB = local::score(QStringLiteral("robin"), match.userId);
    match.bToA = local::score(match.userId, QStringLiteral("robin"));
    match.heatLevel = local::heatLevel(tier);
    match.profileBio = person.bio.toString();
    match.profilePhotos = portraits.photos(person, local::photosShown(person.photoCount, tier));
    if (!match.profilePhotos.isEmpty())
        match.profilePhoto = match.profilePhotos.first();
    return match;
}

QList<MatchResult> peopleNearby(int count)
{
    constexpr std::array closest{38.0, 152.0, 460.0, 1130.0};
    QList<MatchResult> people;
    for (int number = 0; number < count; ++number) {
        const auto place = std::size_t(number);
        const double meters = place < closest.size() && count <= int(closest.size())
                                  ? closest.at(place)
                                  : 38 + (local::reachMeters - 40) * number * number / (count * count);
        people.append(personAway(number, meters));
    }
    return people;
}

} // namespace ambrel
