#include "state/AmbrelAppState.h"
#include "state/ErrorDescription.h"
#include "state/MatchProximity.h"

namespace ambrel {

void AmbrelAppState::keep(const MatchResult &match)
{
    selectedMatch = match;
    statusText = QStringLiteral("Keeping ") + match.displayName + QStringLiteral(" visible.");
}

QCoro::Task<> AmbrelAppState::dismiss(MatchResult match)
{
    const auto self = shared_from_this();
    const DismissRequest request{userId, deviceId, match.userId};
    const auto client = api;
    try {
        co_await client->call(endpoints::dismiss, request);
        removeFromMatches(match.userId);
        statusText = QStringLiteral("Dismissed.");
    } catch (...) {
        statusText = currentErrorDescription();
    }
}

void AmbrelAppState::removeFromMatches(const QString &matchUserId)
{
    QList<MatchResult> left = matches;
    left.removeIf([&matchUserId](const MatchResult &match) { return match.userId == matchUserId; });
    replaceMatches(std::move(left));
    if (selectedMatch.value() && selectedMatch.value()->userId == matchUserId)
        selectFirstMatch();
}

QCoro::Task<> AmbrelAppState::seeMe(MatchResult match)
{
    const auto self = shared_from_this();
    if (!canSeeMe(match)) {
        statusText = QStringLiteral("See Me unlocks at 100 m.");
        co_return;
    }
    const SeeMeRequest request{userId, deviceId, match.userId};
    const auto client = api;
    try {
        co_await client->call(endpoints::seeMe, request);
        flashSeeMeLogo();
        statusText = QStringLiteral("Sent: Can you see me?");
    } catch (...) {
        statusText = currentErrorDescription();
    }
}

} // namespace ambrel
