#include "model/LongTexts.h"

#include "model/JsonReader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <simdjson.h>

namespace ambrel {

namespace {

/// Bytes from which on a string is taken out. Those that stay are shorter, so none of them, however it is escaped, can
/// be taken for a placeholder, which is exactly as long.
constexpr std::size_t minLength = 256;
/// Below this many bytes the whole reply is cheaper to parse.
constexpr std::size_t minReply = std::size_t{32} * 1024;

/// The text of the placeholder for long string number `index`: the number, and blanks.
std::array<char, minLength> placeholder(std::size_t index)
{
    std::array<char, minLength> text;
    text.fill(' ');
    std::to_chars(text.begin(), text.end(), index);
    return text;
}

const char *find(char wanted, const char *text, const char *end)
{
    return static_cast<const char *>(std::memchr(text, wanted, static_cast<std::size_t>(end - text)));
}

/// True for ASCII without control characters and escapes: nothing is left to check or to resolve.
bool isPlain(std::string_view inside)
{
    unsigned char special = 0; // a byte wide and without an early end: the compiler makes vector code of it
    for (const char character : inside) {
        const auto value = static_cast<signed char>(character); // negative beyond ASCII
        special |= (value < ' ') | (value == '\\');
    }
    return special == 0;
}

/// The first quote from `block` on that no backslash escapes; null when none stands before `stop`.
const char *closingQuote(const char *inside, const char *block, const char *stop)
{
    const char *quote = find('"', block, stop);
    for (; quote; quote = find('"', quote + 1, stop)) {
        const char *escapes = quote;
        while (escapes > inside && escapes[-1] == '\\')
            --escapes;
        if ((quote - escapes) % 2 == 0)
            break;
    }
    return quote;
}

struct End
{
    const char *quote; ///< null when the string never ends
    bool isPlain;      ///< of a long string, all before the quote
};

/// Looks for the end of the string that begins at `inside`, a few kilobytes at a time: what has been searched is still
/// in the processor's cache when it is checked.
End endOf(const char *inside, const char *end)
{
    constexpr std::ptrdiff_t blockSize = 8192;
    bool isPlainSoFar = true;
    for (const char *block = inside; block < end;) {
        const char *const stop = block + std::min(blockSize, end - block);
        const char *const quote = closingQuote(inside, block, stop);
        if (quote && static_cast<std::size_t>(quote - inside) < minLength)
            return {quote, false};
        isPlainSoFar = isPlainSoFar && isPlain({block, static_cast<std::size_t>((quote ? quote : stop) - block)});
        if (quote)
            return {quote, isPlainSoFar};
        block = stop;
    }
    return {nullptr, false};
}

/// Resolves the escapes of a string, which stands between quotes, in place, and returns what it says.
std::string_view resolve(char *inside, std::size_t size, simdjson::dom::parser &parser)
{
    std::string_view text;
    if (parser.parse(inside - 1, size + 2, false).get(text) != simdjson::SUCCESS)
        throw DecodingError();
    std::memcpy(inside, text.data(), text.size()); // never longer than it was written
    return {inside, text.size()};
}

} // namespace

LongTexts::LongTexts(Bytes &json) : m_json(json.view())
{
    if (m_json.size() < minReply)
        return;
    simdjson::dom::parser parser;
    const char *const end = m_json.data() + m_json.size();
    const char *copied = m_json.data();
    const char *next = copied;
    const auto copyUpTo = [&](const char *stop) {
        m_skeleton.append({copied, static_cast<std::size_t>(stop - copied)});
    };
    while (const char *const quote = find('"', next, end)) {
        const auto [close, isPlain] = endOf(quote + 1, end);
        if (!close)
            throw DecodingError();
        next = close + 1;
        std::string_view inside(quote + 1, static_cast<std::size_t>(close - quote - 1));
        if (inside.size() < minLength)
            continue;
        if (!isPlain)
            inside = resolve(json.data() + (inside.data() - m_json.data()), inside.size(), parser);
        copyUpTo(quote + 1);
        copied = close;
        const auto text = placeholder(m_taken.size());
        m_skeleton.append({text.data(), text.size()});
        m_taken.push_back(inside);
    }
    if (!m_taken.empty())
        copyUpTo(end);
}

std::optional<std::string_view> LongTexts::at(std::string_view text) const
{
    if (m_taken.empty() || text.size() != minLength)
        return std::nullopt;
    std::size_t index = 0;
    std::from_chars(text.data(), text.data() + text.size(), index);
    return m_taken.at(index);
}

} // namespace ambrel
