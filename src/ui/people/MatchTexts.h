#pragma once

#include "model/ResponseRecords.h"

#include <QString>

namespace ambrel {

// Texts about a match for its card and the profile panel.

/// "100 m - 42 m away"
QString heatAndDistance(const MatchResult &match);
/// The match's own words, or that there are none.
QString bioText(const MatchResult &match);
/// How close the user must come to see more.
QString unlockNote(const MatchResult &match);

} // namespace ambrel
