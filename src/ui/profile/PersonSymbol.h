#pragma once

#include <QColor>
#include <QPointF>

class QPainter;

namespace ambrel {

/// Draws a filled circle, `size` pixels across, with the silhouette of a person cut out: nobody to be seen yet.
void paintPersonSymbol(QPainter &painter, QPointF center, qreal size, const QColor &color);

} // namespace ambrel
