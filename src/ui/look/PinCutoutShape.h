#pragma once

#include <QPainterPath>
#include <QRectF>

namespace ambrel {

/// A teardrop map pin with its point at the bottom.
struct PinCutoutShape
{
    /// The closed outline for a frame of `rect`'s size. It starts at (0, 0) wherever `rect` lies. Any thread.
    QPainterPath path(const QRectF &rect) const;
};

} // namespace ambrel
