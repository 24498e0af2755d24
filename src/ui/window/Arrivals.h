#pragma once

#include "model/ResponseRecords.h"

namespace ambrel {

/// What a screen reader says of the people in `now` who were not in `before`: "Eve is nearby, and 2 more." Empty when
/// nobody has come. Pure; any thread.
QString arrivalsText(const QList<MatchResult> &before, const QList<MatchResult> &now);

} // namespace ambrel
