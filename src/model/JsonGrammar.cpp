#include "model/JsonGrammar.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace ambrel {

namespace {

/// The parts of a number's token.
struct Number
{
    bool isNegative = false;
    std::string_view whole;
    std::string_view fraction; ///< without the point
    std::string_view exponent; ///< as std::from_chars reads it: without the "e" and a plus sign
};

bool isDigit(char letter)
{
    return letter >= '0' && letter <= '9';
}

bool isHexDigit(char letter)
{
    return isDigit(letter) || (letter >= 'a' && letter <= 'f') || (letter >= 'A' && letter <= 'F');
}

bool take(std::string_view &text, std::string_view anyOf)
{
    if (text.empty() || anyOf.find(text.front()) == std::string_view::npos)
        return false;
    text.remove_prefix(1);
    return true;
}

std::string_view takeDigits(std::string_view &text)
{
    const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
    const std::string_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(digits.size());
    return digits;
}

std::optional<Number> numberIn(std::string_view token)
{
    Number number;
    number.isNegative = take(token, "-");
    number.whole = takeDigits(token);
    if (number.whole.empty() || (number.whole.size() > 1 && number.whole.front() == '0'))
        return std::nullopt;
    if (take(token, ".")) {
        number.fraction = takeDigits(token);
        if (number.fraction.empty())
            return std::nullopt;
    }
    if (take(token, "eE")) {
        const bool hasPlus = take(token, "+");
        number.exponent = token;
        if (!hasPlus)
            take(token, "-");
        if (takeDigits(token).empty())
            return std::nullopt;
    }
    return token.empty() ? std::optional(number) : std::nullopt;
}

} // namespace

bool isJsonNumber(std::string_view token)
{
    return numberIn(token).has_value();
}

bool isJsonString(std::string_view inside)
{
    constexpr std::size_t codeDigits = 4;
    while (!inside.empty()) {
        const bool isEscape = inside.front() == '\\';
        inside.remove_prefix(1);
        if (!isEscape)
            continue;
        if (take(inside, "u")) {
            const std::string_view code = inside.substr(0, codeDigits);
            if (code.size() < codeDigits || !std::all_of(code.begin(), code.end(), isHexDigit))
                return false;
        } else if (!take(inside, "\"\\/bfnrt")) {
            return false;
        }
    }
    return true;
}

std::optional<std::int64_t> wholeNumber(std::string_view token)
{
    const auto number = numberIn(token);
    if (!number)
        return std::nullopt;
    std::string digits(number->whole);
    digits += number->fraction;
    const std::size_t last = digits.find_last_not_of('0');
    if (last == std::string::npos)
        return 0;

    int exponent = 0;
    const std::string_view written = number->exponent;
    if (!written.empty() &&
        std::from_chars(written.data(), written.data() + written.size(), exponent).ec != std::errc())
        return std::nullopt;
    // From here on the value is `digits` times ten to the power of `scale`.
    const long scale =
        exponent + static_cast<long>(digits.size() - last - 1) - static_cast<long>(number->fraction.size());
    constexpr long mostDigits = 19;
    digits.resize(last + 1);
    digits.erase(0, digits.find_first_not_of('0'));
    if (scale < 0 || scale > mostDigits || digits.size() > mostDigits)
        return std::nullopt;
    digits.append(static_cast<std::size_t>(scale), '0');
    if (number->isNegative)
        digits.insert(0, 1, '-');

    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return error == std::errc() ? std::optional(value) : std::nullopt;
}

} // namespace ambrel
