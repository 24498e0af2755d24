#pragma once

#include <QRectF>
#include <Qt>

class QColor;
class QPainter;

namespace ambrel {

/// How far the focus ring reaches beyond the shape that it surrounds, in pixels.
inline constexpr int focusRingReach = 3;

/// Draws a ring around a rounded shape, with a small gap between them.
void drawFocusRing(QPainter &painter, const QRectF &shape, qreal radius, const QColor &color);

/// Whether a widget shows its ring that gets the focus for `reason` and showed it or not the time `before`. A click
/// shows by itself where the focus is; a focus that comes back to its window, or from a popup, shows what it showed.
bool showsFocusRing(Qt::FocusReason reason, bool before);

} // namespace ambrel
