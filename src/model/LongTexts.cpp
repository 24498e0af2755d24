#include "model/LongTexts.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iterator>
#include <numeric>

namespace ambrel {

namespace {

/// Below this a string is cheaper to parse than to take out.
constexpr std::size_t shortest = 1024;
/// Below this the whole reply is.
constexpr std::size_t shortestReply = std::size_t{32} * 1024;

using Block16 = signed char __attribute__((vector_size(16)));
using Block32 = signed char __attribute__((vector_size(32)));

/// The first quote, backslash, control character or byte beyond ASCII at or after `text`; `end` when there is none.
/// Reads whole blocks, into the padding behind the text.
template <typename Block>
[[gnu::always_inline]] inline const char *firstSpecialIn(const char *text, const char *end)
{
    static_assert(std::endian::native == std::endian::little);
    constexpr std::size_t size = sizeof(Block);
    constexpr std::size_t blocks = 4;
    static_assert(blocks * size <= Bytes::padding);
    for (; text < end; text += blocks * size) {
        Block special[blocks]; // all bits of each byte that is special; those beyond ASCII are negative
        for (std::size_t i = 0; i < blocks; ++i) {
            Block block;
            std::memcpy(&block, text + i * size, size);
            special[i] = (block == '"') | (block == '\\') | (block < ' ');
        }
        const Block any = special[0] | special[1] | special[2] | special[3];
        std::uint64_t words[blocks * size / 8];
        std::memcpy(words, &any, size);
        if (std::accumulate(words, words + size / 8, std::uint64_t{0}, std::bit_or<>()) == 0)
            continue;
        std::memcpy(words, special, sizeof words);
        const auto *const word = std::find_if(std::begin(words), std::end(words), [](auto bits) { return bits != 0; });
        const auto index = static_cast<std::size_t>((word - words) * 8 + std::countr_zero(*word) / 8);
        return std::min(text + index, end);
    }
    return end;
}

#if defined(__x86_64__)
[[gnu::target("avx2")]] const char *firstSpecialAvx2(const char *text, const char *end)
{
    return firstSpecialIn<Block32>(text, end);
}
#endif

const char *firstSpecial(const char *text, const char *end)
{
#if defined(__x86_64__)
    static const bool hasAvx2 = __builtin_cpu_supports("avx2");
    if (hasAvx2)
        return firstSpecialAvx2(text, end);
#endif
    return firstSpecialIn<Block16>(text, end);
}

/// A string that has begun: where its closing quote stands, and whether it may be taken out.
struct End
{
    const char *quote; ///< null when the string never ends
    bool isPlain = true;
    bool hasSolidus = false;
};

End endOf(const char *text, const char *end)
{
    End result{nullptr};
    for (const char *at = firstSpecial(text, end); at < end; at = firstSpecial(at, end)) {
        if (*at == '"') {
            result.quote = at;
            return result;
        }
        const bool isEscape = *at == '\\' && at + 1 < end;
        const bool isSolidus = isEscape && at[1] == '/';
        result.hasSolidus = result.hasSolidus || isSolidus;
        result.isPlain = result.isPlain && isSolidus;
        at += isEscape ? 2 : 1;
    }
    return result;
}

/// Turns every "\/" into "/" and returns the new length. The text holds no other backslash.
std::size_t unescapeSolidus(char *text, const char *end)
{
    const char *read = text;
    char *write = text;
    while (read < end) {
        const void *const found = std::memchr(read, '\\', static_cast<std::size_t>(end - read));
        const char *const stop = found ? static_cast<const char *>(found) : end;
        const auto run = static_cast<std::size_t>(stop - read);
        std::memmove(write, read, run);
        write += run;
        read = found ? stop + 1 : end; // the solidus itself opens the next run
    }
    return static_cast<std::size_t>(write - text);
}

} // namespace

LongTexts::LongTexts(Bytes &json) : m_json(json.view())
{
    if (m_json.size() < shortestReply)
        return;
    char *const begin = json.data();
    const char *const end = begin + json.size();
    std::size_t copied = 0;
    const char *next = begin;
    while (const void *const quote = std::memchr(next, '"', static_cast<std::size_t>(end - next))) {
        const auto inside = static_cast<std::size_t>(static_cast<const char *>(quote) - begin) + 1;
        const End stop = endOf(begin + inside, end);
        if (!stop.quote)
            break;
        const auto close = static_cast<std::size_t>(stop.quote - begin);
        if (stop.isPlain && close - inside >= shortest) {
            const std::size_t length = stop.hasSolidus ? unescapeSolidus(begin + inside, stop.quote) : close - inside;
            take(copied, inside, close, length);
        }
        next = stop.quote + 1;
    }
    if (!m_taken.empty())
        m_skeleton.append(m_json.substr(copied));
}

void LongTexts::take(std::size_t &copied, std::size_t begin, std::size_t end, std::size_t length)
{
    m_skeleton.append(m_json.substr(copied, begin - copied));
    m_taken.push_back({m_skeleton.size() - 1, m_json.substr(begin, length)});
    copied = end;
}

std::optional<std::string_view> LongTexts::takenAt(const char *token) const
{
    const auto offset = static_cast<std::size_t>(token - skeleton().data());
    const auto found = std::lower_bound(m_taken.begin(), m_taken.end(), offset,
                                        [](const Taken &taken, std::size_t sought) { return taken.offset < sought; });
    if (found == m_taken.end() || found->offset != offset)
        return std::nullopt;
    return found->inside;
}

} // namespace ambrel
