#include "ui/look/PinShapes.h"

#include <QTransform>

namespace ambrel {

QPainterPath HeartPinShape::path(const QRectF &rect) const
{
    QPainterPath path(QPointF(0.5, 0.76));
    path.cubicTo(0.43, 0.65, 0.24, 0.53, 0.25, 0.38);
    path.cubicTo(0.26, 0.25, 0.42, 0.2, 0.5, 0.34);
    path.cubicTo(0.58, 0.2, 0.74, 0.25, 0.75, 0.38);
    path.cubicTo(0.76, 0.53, 0.57, 0.65, 0.5, 0.76);
    path.closeSubpath();
    return QTransform::fromScale(rect.width(), rect.height()).map(path);
}

QPainterPath PinCutoutShape::path(const QRectF &rect) const
{
    QPainterPath path(QPointF(0.5, 0.94));
    path.cubicTo(0.2, 0.58, 0.12, 0.42, 0.12, 0.22);
    path.cubicTo(0.12, 0.08, 0.34, 0.02, 0.5, 0.02);
    path.cubicTo(0.66, 0.02, 0.88, 0.08, 0.88, 0.22);
    path.cubicTo(0.88, 0.42, 0.8, 0.58, 0.5, 0.94);
    path.closeSubpath();
    return QTransform::fromScale(rect.width(), rect.height()).map(path);
}

} // namespace ambrel
