#pragma once

#include <QPainterPath>
#include <QRectF>

namespace ambrel {

/// A heart whose point is at the bottom centre.
struct HeartPinShape
{
    /// The closed outline for a frame of `rect`'s size. It starts at (0, 0) wherever `rect` lies. Any thread.
    QPainterPath path(const QRectF &rect) const;
};

} // namespace ambrel
