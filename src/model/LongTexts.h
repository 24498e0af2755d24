#pragma once

#include "model/Bytes.h"

#include <optional>
#include <string_view>
#include <vector>

namespace ambrel {

/// A JSON text without its long strings, and those strings beside it. Photos are nearly all of a large reply: one
/// look finds where each begins and ends, and the JSON parser then works on the few kilobytes between them.
class LongTexts
{
public:
    /// Takes the long strings out of `json`, which must outlive this. "\/" is unescaped where it stands, so `json`
    /// is used up. Strings with other escapes or with letters beyond ASCII stay: the parser knows about those.
    explicit LongTexts(Bytes &json);

    /// The JSON text in which each long string has become ""; followed by `Bytes::padding` readable bytes.
    std::string_view skeleton() const { return m_skeleton.size() ? m_skeleton.view() : m_json; }
    /// The inside of the long string whose "" begins at `token` in the skeleton; nothing for any other token.
    std::optional<std::string_view> at(const char *token) const
    {
        return m_taken.empty() ? std::nullopt : takenAt(token);
    }

private:
    struct Taken
    {
        std::size_t offset; ///< of its "" in the skeleton
        std::string_view inside;
    };
    std::optional<std::string_view> takenAt(const char *token) const;
    void take(std::size_t &copied, std::size_t begin, std::size_t end, std::size_t length);

    std::string_view m_json;
    Bytes m_skeleton;
    std::vector<Taken> m_taken; ///< by rising offset
};

} // namespace ambrel
