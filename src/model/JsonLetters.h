#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace ambrel {

/// What the inside of a string token holds; looked at eight bytes at a time, into the padding behind the text.
struct JsonLetters
{
    bool hasBackslash;
    bool isAscii;

    explicit JsonLetters(std::string_view inside)
    {
        constexpr std::uint64_t each = 0x0101010101010101;
        constexpr std::uint64_t highBits = each << 7;
        std::uint64_t all = 0;
        std::uint64_t backslashes = 0;
        for (std::size_t i = 0; i < inside.size(); i += sizeof all) {
            std::uint64_t word;
            std::memcpy(&word, inside.data() + i, sizeof word);
            if (const std::size_t left = inside.size() - i; left < sizeof word)
                word &= (std::uint64_t{1} << (8 * left)) - 1;
            all |= word;
            const std::uint64_t other = word ^ each * '\\'; // zero where the backslash stands
            backslashes |= (other - each) & ~other & highBits;
        }
        hasBackslash = backslashes != 0;
        isAscii = (all & highBits) == 0;
    }
};

} // namespace ambrel
