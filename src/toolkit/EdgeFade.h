#pragma once

class QAbstractScrollArea;

namespace ambrel {

/// Lets the content of `area` fade out over `pixels` at its upper and its lower edge while more is hidden there, into
/// what is behind the area, which must not have a background of its own. Main thread.
void fadeEdges(QAbstractScrollArea &area, int pixels);

} // namespace ambrel
