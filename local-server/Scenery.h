#pragma once

#include "local-server/Look.h"

#include <QRectF>

class QPainter;

namespace ambrel::local {

/// Fills `canvas` with the background of a photo.
void drawScene(QPainter &painter, Scene scene, const QRectF &canvas);

} // namespace ambrel::local
