#pragma once

#include "model/Bytes.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace ambrel {

/// A field's key with its closing quote, to be compared in words: shorter than the padding behind the text, it can be
/// compared at any place of it.
class JsonKey
{
public:
    constexpr explicit JsonKey(const char *key) : m_text(key)
    {
        std::array<char, size> bytes{};
        std::array<char, size> mask{};
        for (std::size_t i = 0; i <= m_text.size(); ++i) { // a key that is too long does not compile
            bytes.at(i) = i < m_text.size() ? m_text[i] : '"';
            mask.at(i) = '\xff';
        }
        m_words = std::bit_cast<Words>(bytes);
        m_masks = std::bit_cast<Words>(mask);
        m_wordCount = m_text.size() / sizeof(std::uint64_t) + 1;
    }

    /// The key without its quotes.
    std::string_view text() const { return m_text; }

    /// True if the inside of a JSON string that begins at `place` is this key. The text is followed by padding.
    bool standsAt(const char *place) const
    {
        for (std::size_t i = 0; i < m_wordCount; ++i) {
            std::uint64_t word;
            std::memcpy(&word, place + i * sizeof word, sizeof word);
            if (((word ^ m_words[i]) & m_masks[i]) != 0)
                return false;
        }
        return true;
    }

private:
    static constexpr std::size_t size = 32;
    static_assert(size <= Bytes::padding);
    using Words = std::array<std::uint64_t, size / sizeof(std::uint64_t)>;

    std::string_view m_text;
    Words m_words{};
    Words m_masks{};
    std::size_t m_wordCount = 0;
};

} // namespace ambrel
