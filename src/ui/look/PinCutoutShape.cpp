#include "ui/look/PinCutoutShape.h"

namespace ambrel {

QPainterPath PinCutoutShape::path(const QRectF &rect) const
{
    const auto at = [&rect](qreal x, qreal y) { return QPointF(x * rect.width(), y * rect.height()); };
    QPainterPath path(at(0.5, 0.94));
    path.cubicTo(at(0.2, 0.58), at(0.12, 0.42), at(0.12, 0.22));
    path.cubicTo(at(0.12, 0.08), at(0.34, 0.02), at(0.5, 0.02));
    path.cubicTo(at(0.66, 0.02), at(0.88, 0.08), at(0.88, 0.22));
    path.cubicTo(at(0.88, 0.42), at(0.8, 0.58), at(0.5, 0.94));
    path.closeSubpath();
    return path;
}

} // namespace ambrel
