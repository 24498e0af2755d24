#pragma once

class QAbstractScrollArea;

namespace ambrel {

/// Lets Tab stop at `area` while there is something to scroll in it, with a focus ring above its content, which begins
/// `ringTop` pixels below its upper edge; the arrow keys then scroll. Main thread.
void enableKeyboardScrolling(QAbstractScrollArea &area, int ringTop = 0);

} // namespace ambrel
