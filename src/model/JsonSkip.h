#pragma once

#include "model/JsonPlace.h"

#include <string_view>

namespace ambrel {

/// Nesting beyond this is refused: readers recurse.
inline constexpr int maximumJsonDepth = 512;

/// The text of a scalar as it stands in the reply.
inline std::string_view tokenOf(simdjson::ondemand::value &value)
{
    const std::string_view token = value.raw_json_token();
    return token.substr(0, token.find_last_not_of(" \t\r\n") + 1);
}

/// What stands between the quotes of a string's token.
inline std::string_view insideOf(std::string_view token)
{
    return token.substr(1, token.find_last_of('"') - 1);
}

/// What stands between the quotes of a key.
inline std::string_view insideOf(simdjson::ondemand::field &field)
{
    const char *const begin = field.key().raw();
    const char *end = begin; // a quote always follows: the text has been indexed
    while (*end != '"')
        end += *end == '\\' ? 2 : 1;
    return {begin, static_cast<std::size_t>(end - begin)};
}

/// Refuses the reply unless `inside` is the inside of a well-formed string. Throws DecodingError.
void expectString(std::string_view inside, const Place &place);

/// Checks a value that nobody asked for, so that a broken reply is never taken for a whole one. What is valid JSON
/// passes, whether we could hold it or not. Throws DecodingError.
void skip(simdjson::ondemand::value value, const Place &place);

} // namespace ambrel
