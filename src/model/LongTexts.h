#pragma once

#include "model/Bytes.h"

#include <optional>
#include <string_view>
#include <vector>

namespace ambrel {

/// A JSON text without its long strings, and those strings beside it. Photos are nearly all of a large reply: they are
/// found and checked in place, and the JSON parser then works on the few kilobytes between them. The parser alone would
/// unescape them into a copy: a reply of 30 MB then takes six times as long and three times its size in memory.
class LongTexts
{
public:
    /// Takes the long strings out of `json`, which must outlive this. Escapes are resolved where they stand, so `json`
    /// is used up. Throws DecodingError for a long string that is not valid JSON.
    explicit LongTexts(Bytes &json);

    /// The JSON text in which a short placeholder stands for each long string; followed by `Bytes::padding` readable
    /// bytes. What is wrong with it is wrong with the whole.
    std::string_view skeleton() const { return m_taken.empty() ? m_json : m_skeleton.view(); }
    /// The long string for which `text`, read from the skeleton, stands; nothing when `text` stands for itself.
    std::optional<std::string_view> at(std::string_view text) const;

private:
    std::string_view m_json;
    Bytes m_skeleton;
    std::vector<std::string_view> m_taken;
};

} // namespace ambrel
