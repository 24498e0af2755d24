#pragma once

#include "ui/look/Theme.h"

#include <QPainter>
#include <QRectF>

namespace ambrel {

// What several views draw alike. Each call leaves the painter as it found it. Rounded rectangles with straight sides
// are drawn on the calling thread alone, up to a scale of two; the painter may be moved and scaled, not turned.

/// Fills a rounded rectangle.
void fillRounded(QPainter &painter, const QRectF &rect, const QBrush &brush, qreal radius = theme::cornerRadius);

/// Strokes a rounded rectangle `width` thick, wholly inside `rect`, which is at least twice as wide.
void strokeRounded(QPainter &painter, const QRectF &rect, const QColor &color, qreal width = theme::hairline,
                   qreal radius = theme::cornerRadius);

/// The ring around what has the keyboard focus, drawn just inside `rect`.
void strokeFocusRing(QPainter &painter, const QRectF &rect, const QColor &color = theme::focusRing,
                     qreal radius = theme::cornerRadius);

/// The drop shadow of a disc as wide as `frame`, for the painter of whatever the disc lies on.
void paintDiscShadow(QPainter &painter, const QRectF &frame, const QColor &color, qreal blur, qreal offset);

} // namespace ambrel
