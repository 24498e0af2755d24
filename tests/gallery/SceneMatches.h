#pragma once

#include "model/ResponseRecords.h"

#include <QList>
#include <QString>

namespace ambrel {

/// One of the local server's people at this distance, with the heat level and the photos that belong to it. Numbers
/// beyond the people there are give their namesakes.
MatchResult personAway(int number, double meters);

/// So many people, the nearest first: from a few steps to a mile away, all four heat levels among the first four.
QList<MatchResult> peopleNearby(int count);

} // namespace ambrel
