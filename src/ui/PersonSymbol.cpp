#include "ui/PersonSymbol.h"

#include <QPainter>
#include <QPainterPath>

namespace ambrel {

namespace {

QPainterPath ellipse(QPointF center, qreal horizontalRadius, qreal verticalRadius)
{
    QPainterPath path;
    path.addEllipse(center, horizontalRadius, verticalRadius);
    return path;
}

/// The symbol, one unit across, around the origin.
QPainterPath symbol()
{
    const QPainterPath inside = ellipse({}, 0.435, 0.435); // leaves a rim beneath the shoulders
    const QPainterPath head = ellipse({0, -0.12}, 0.155, 0.175);
    const QPainterPath shoulders = ellipse({0, 0.41}, 0.32, 0.285).intersected(inside);
    return ellipse({}, 0.5, 0.5).subtracted(head).subtracted(shoulders);
}

} // namespace

void paintPersonSymbol(QPainter &painter, QPointF center, qreal size, const QColor &color)
{
    static const QPainterPath path = symbol();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(center);
    painter.scale(size, size);
    painter.fillPath(path, color);
    painter.restore();
}

} // namespace ambrel
