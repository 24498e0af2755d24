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

} // namespace ambrel
