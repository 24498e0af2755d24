#pragma once

#include "local-server/Look.h"

class QPainter;

namespace ambrel::local {

/// Draws head and shoulders; the origin is the middle of a face that is 140 wide and 176 high. `smile` runs from
/// 0 (a quiet face) to 1 (a laugh).
void drawFigure(QPainter &painter, const Look &look, double smile);

} // namespace ambrel::local
