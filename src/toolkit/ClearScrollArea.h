#pragma once

#include <QScrollArea>

namespace ambrel {

/// Puts `content` into `area`, which owns it from then on, without a frame or a background: what is behind shows
/// through. Main thread.
void showThrough(QScrollArea &area, QWidget &content);

} // namespace ambrel
