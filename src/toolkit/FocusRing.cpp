#include "toolkit/FocusRing.h"

#include <QPainter>

namespace ambrel {

void drawFocusRing(QPainter &painter, const QRectF &shape, qreal radius, const QColor &color)
{
    constexpr qreal stroke = 2;
    constexpr qreal outset = focusRingReach - stroke / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, stroke));
    painter.drawRoundedRect(shape.adjusted(-outset, -outset, outset, outset), radius + outset, radius + outset);
    painter.restore();
}

bool showsFocusRing(Qt::FocusReason reason, bool before)
{
    const bool comesBack = reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
    return comesBack ? before : reason != Qt::MouseFocusReason;
}

} // namespace ambrel
