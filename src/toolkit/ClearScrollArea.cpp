#include "toolkit/ClearScrollArea.h"

#include "toolkit/AccessibleScrollArea.h"

namespace ambrel {

void showThrough(QScrollArea &area, QWidget &content)
{
    AccessibleScrollArea::installOn(area);
    area.setFrameShape(QFrame::NoFrame);
    area.setWidget(&content);
    content.setAutoFillBackground(false); // the area has just set it
    area.viewport()->setAutoFillBackground(false);
}

} // namespace ambrel
