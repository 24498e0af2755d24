#pragma once

#include "model/ResponseRecords.h"

#include <QList>
#include <QString>

namespace ambrel {

// What a match may show at its heat level. The server alone decides the level; pure functions, any thread.

/// Whether a profile photo may be shown at all.
bool isPhotoVisible(const MatchResult &match);
/// Whether the shown photo may be opened large.
bool canOpenPhoto(const MatchResult &match);
/// The photos that may be shown, in order. Not gated by `isPhotoVisible`: ask that first.
QList<PhotoText> visiblePhotos(const MatchResult &match);
/// Whether a See Me message may be sent to this match.
bool canSeeMe(const MatchResult &match);
/// The distance band of the match's tier.
QString heatLabel(const MatchResult &match);
/// The distance in metres or miles. A distance below the range of 64-bit integers ends the program.
QString friendlyDistance(const MatchResult &match);

} // namespace ambrel
