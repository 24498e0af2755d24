#pragma once

#include <QImage>
#include <QString>

namespace ambrel {

/// Why `actual` does not show what `golden` shows; empty when it does. Edges may be smoothed differently: a pixel may
/// have any colour between those of its neighbours.
QString difference(const QImage &actual, const QImage &golden);

} // namespace ambrel
