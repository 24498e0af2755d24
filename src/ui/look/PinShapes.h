#pragma once

#include <QPainterPath>
#include <QRectF>

namespace ambrel {

// The outlines inside the brand mark: closed, for a frame of `rect`'s size whose origin is (0, 0) wherever `rect` lies.
// Any thread.

/// A heart with its point at the bottom.
struct HeartPinShape
{
    QPainterPath path(const QRectF &rect) const;
};

/// A teardrop map pin with its point at the bottom.
struct PinCutoutShape
{
    QPainterPath path(const QRectF &rect) const;
};

} // namespace ambrel
