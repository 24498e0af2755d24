#pragma once

#include <QScrollArea>

namespace ambrel {

/// Puts `content` into `area`, which owns it from then on, without a frame or a background: what is behind shows
/// through. Main thread.
inline void showThrough(QScrollArea &area, QWidget &content)
{
    area.setFrameShape(QFrame::NoFrame);
    area.setWidget(&content);
    content.setAutoFillBackground(false); // the area has just set it
    area.viewport()->setAutoFillBackground(false);
}

} // namespace ambrel
