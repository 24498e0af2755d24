#pragma once

#include <QCoroTask>
#include <chrono>
#include <stop_token>

namespace ambrel {

/// Suspends the calling coroutine for `duration`, or until a stop is requested. True when it slept to the end.
/// Must be awaited on a thread with a Qt event loop; the stop must be requested on that same thread.
QCoro::Task<bool> sleepFor(std::chrono::milliseconds duration, std::stop_token stop = {});

} // namespace ambrel
