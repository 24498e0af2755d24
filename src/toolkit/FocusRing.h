#pragma once

#include <QRectF>

class QColor;
class QPainter;

namespace ambrel {

/// How far the focus ring reaches beyond the shape that it surrounds, in pixels.
inline constexpr int focusRingReach = 3;

/// Draws a ring around a rounded shape, with a small gap between them.
void drawFocusRing(QPainter &painter, const QRectF &shape, qreal radius, const QColor &color);

} // namespace ambrel
