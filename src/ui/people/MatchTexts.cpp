#include "ui/people/MatchTexts.h"

#include "state/MatchProximity.h"

namespace ambrel {

QString heatAndDistance(const MatchResult &match)
{
    return heatLabel(match) + QStringLiteral(" - ") + friendlyDistance(match) + QStringLiteral(" away");
}

QString bioText(const MatchResult &match)
{
    return match.profileBio.value_or(QStringLiteral("No bio yet."));
}

QString unlockNote(const MatchResult &match)
{
    if (!isPhotoVisible(match))
        return QStringLiteral("Profile photo unlocks within 1/2 mile.");
    if (match.heatLevel == QLatin1String("AMBREL"))
        return QStringLiteral("Photo opens within 200 m.");
    if (match.heatLevel == QLatin1String("HOT"))
        return QStringLiteral("More photos unlock within 100 m.");
    return QStringLiteral("All available photos are unlocked.");
}

} // namespace ambrel
