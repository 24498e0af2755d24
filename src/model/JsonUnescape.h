#pragma once

#include <cstddef>
#include <optional>

namespace ambrel {

/// Turns every "\/" of a JSON string's inside into "/" where it stands and returns the new length.
/// Nothing, and the text untouched, when another escape occurs.
std::optional<std::size_t> unescapeSolidusInPlace(char *text, std::size_t length);

} // namespace ambrel
