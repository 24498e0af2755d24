#pragma once

namespace ambrel {

/// Lets the application quit as usual when its process is asked to end, as it is at the end of a desktop session. Asked
/// twice it ends at once. Main thread, once.
void quitOnEndingSignals();

} // namespace ambrel
