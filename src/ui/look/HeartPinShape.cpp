#include "ui/look/HeartPinShape.h"

namespace ambrel {

QPainterPath HeartPinShape::path(const QRectF &rect) const
{
    const auto at = [&rect](qreal x, qreal y) { return QPointF(x * rect.width(), y * rect.height()); };
    QPainterPath path(at(0.5, 0.76));
    path.cubicTo(at(0.43, 0.65), at(0.24, 0.53), at(0.25, 0.38));
    path.cubicTo(at(0.26, 0.25), at(0.42, 0.2), at(0.5, 0.34));
    path.cubicTo(at(0.58, 0.2), at(0.74, 0.25), at(0.75, 0.38));
    path.cubicTo(at(0.76, 0.53), at(0.57, 0.65), at(0.5, 0.76));
    path.closeSubpath();
    return path;
}

} // namespace ambrel
