#pragma once

#include "model/ResponseRecords.h"

namespace ambrel {

// A match cut out of a reply keeps that whole reply alive through its photos; one that outlives the reply, like the
// selection, gets bytes of its own.

/// True when the match keeps no reply alive. Any thread.
bool ownsPhotos(const MatchResult &match);
/// The same match with photo bytes of its own. Copies megabytes: for the worker pool.
MatchResult withOwnedPhotos(MatchResult match);
/// True when both are the same user with the very same photo bytes in memory. Any thread.
bool hasSamePhotos(const MatchResult &a, const MatchResult &b);

} // namespace ambrel
