#include "ui/profile/PersonSymbol.h"

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

/// Large enough for the toolkit to cut curves out of curves smoothly.
constexpr qreal symbolSize = 1000;

/// The symbol around the origin.
QPainterPath symbol()
{
    const QPainterPath inside = ellipse({}, 435, 435); // leaves a rim beneath the shoulders
    const QPainterPath head = ellipse({0, -120}, 155, 175);
    const QPainterPath shoulders = ellipse({0, 410}, 320, 285).intersected(inside);
    return ellipse({}, symbolSize / 2, symbolSize / 2).subtracted(head).subtracted(shoulders);
}

} // namespace

void paintPersonSymbol(QPainter &painter, QPointF center, qreal size, const QColor &color)
{
    static const QPainterPath path = symbol();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(center);
    painter.scale(size / symbolSize, size / symbolSize);
    painter.fillPath(path, color);
    painter.restore();
}

} // namespace ambrel
