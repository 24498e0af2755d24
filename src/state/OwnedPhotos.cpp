#include "state/OwnedPhotos.h"

#include <algorithm>

namespace ambrel {

bool ownsPhotos(const MatchResult &match)
{
    return (!match.profilePhoto || match.profilePhoto->isOwned()) &&
           std::all_of(match.profilePhotos.cbegin(), match.profilePhotos.cend(),
                       [](const PhotoText &photo) { return photo.isOwned(); });
}

MatchResult withOwnedPhotos(MatchResult match)
{
    if (match.profilePhoto)
        match.profilePhoto = match.profilePhoto->owned();
    for (PhotoText &photo : match.profilePhotos)
        photo = photo.owned();
    return match;
}

bool hasSamePhotos(const MatchResult &a, const MatchResult &b)
{
    const auto isSame = [](const PhotoText &one, const PhotoText &other) { return one.isSameAs(other); };
    return a.userId == b.userId && a.profilePhoto.has_value() == b.profilePhoto.has_value() &&
           (!a.profilePhoto || isSame(*a.profilePhoto, *b.profilePhoto)) &&
           std::equal(a.profilePhotos.cbegin(), a.profilePhotos.cend(), b.profilePhotos.cbegin(),
                      b.profilePhotos.cend(), isSame);
}

} // namespace ambrel
