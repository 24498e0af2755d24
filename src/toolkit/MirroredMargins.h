#pragma once

#include <QMargins>
#include <Qt>

namespace ambrel {

/// Margins for a layout, which does not mirror them by itself: left and right change places in a right-to-left one.
constexpr QMargins mirroredMargins(const QMargins &margins, Qt::LayoutDirection direction)
{
    return direction == Qt::LeftToRight ? margins
                                        : QMargins(margins.right(), margins.top(), margins.left(), margins.bottom());
}

} // namespace ambrel
