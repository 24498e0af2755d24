#pragma once

#include <QtGlobal>
#include <cmath>

namespace ambrel {

/// The nearest whole number, halves away from zero. A value that 64 bits cannot hold ends the program. Any thread.
inline qint64 roundedInteger(double value)
{
    constexpr double limit = 9223372036854775808.0; // 2^63, the first value out of range
    const double rounded = std::round(value);
    if (!(rounded >= -limit && rounded < limit))
        qFatal("%g does not fit a 64-bit integer", value);
    return static_cast<qint64>(rounded);
}

} // namespace ambrel
