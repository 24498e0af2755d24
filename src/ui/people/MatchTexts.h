#pragma once

#include "model/ResponseRecords.h"

#include <QString>

namespace ambrel {

// Texts that the match card and the profile panel have in common.

/// "100 m - 42 m away"
QString heatAndDistance(const MatchResult &match);
/// The match's own words, or that there are none.
QString bioText(const MatchResult &match);

} // namespace ambrel
