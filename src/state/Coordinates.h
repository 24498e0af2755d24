#pragma once

#include <QString>

namespace ambrel {

/// The typed `text` as degrees: whatever C's strtod reads as a whole, with a decimal point in every locale, infinities
/// and hexadecimal included; blanks around it are allowed. `fallback` when it is anything else. No range check.
double parsedCoordinate(const QString &text, double fallback);

/// `degrees` in the shortest form that reads back as the same value, with at least one decimal: "40.0".
QString coordinateText(double degrees);

} // namespace ambrel
