#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace ambrel {

// What is valid JSON although no type of ours can hold it. Pure; any thread.

/// True for the token of a number, however large or small.
bool isJsonNumber(std::string_view token);

/// True for the inside of a string whose escapes are all well formed, half a surrogate pair included. Control
/// characters and broken UTF-8 are not looked for.
bool isJsonString(std::string_view inside);

/// The exact value of a number without a fraction, which may be written as 70.0 or 7e1; none when it has one, when 64
/// bits cannot hold it, or when `token` is no number.
std::optional<std::int64_t> wholeNumber(std::string_view token);

} // namespace ambrel
