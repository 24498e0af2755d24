#pragma once

#include <QString>
#include <chrono>
#include <functional>

namespace ambrel::local {

/// A moment: milliseconds since 1970 in UTC.
using Moment = std::chrono::milliseconds;
/// Tells the present moment. Tests bring a clock that they can move.
using Clock = std::function<Moment()>;

/// The computer's own clock.
Moment systemTime();
/// `moment` as ISO 8601 in UTC, with milliseconds.
QString isoTime(Moment moment);

} // namespace ambrel::local
