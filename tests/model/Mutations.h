#pragma once

#include <array>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace ambrel {

inline std::string repeated(std::string_view text, std::size_t times)
{
    std::string result;
    for (std::size_t i = 0; i < times; ++i)
        result += text;
    return result;
}

inline std::string padded(std::string text, std::size_t size)
{
    text.resize(size, ' ');
    return text;
}

/// One match with one photo, all of whose texts stand as they come in JSON.
inline std::string sampleMatch(const std::string &name, const std::string &bio, const std::string &photo)
{
    return R"({"userId":"u-)" + name + R"(", "displayName":")" + name + R"(","distanceMeters":42.5,"aToB":72,)" +
           R"("bToA":-0.5e1,"heatLevel":"VERY_HOT","profileBio":")" + bio + R"(","profilePhoto":")" + photo +
           R"(","profilePhotos":["short\/","",")" + photo + R"("],"other":[{"a":[1,null,{}]},")" + photo +
           R"("],"updatedAt":null})";
}

/// Check replies of every kind, valid all of them: a small one first, then some with long texts.
inline const std::vector<std::string> &sampleReplies()
{
    static const auto reply = [](const std::string &matches) {
        return R"({"active":true,"thresholdPercent":70.0,"maxDistanceMeters":1609,"matches":[)" + matches +
               R"(],"seeMeMessages":[{"id":"m","fromUserId":"b","toUserId":"a","body":"caf\u00e9 \ud83d\ude00 é",)" +
               R"("createdAt":"2026-01-01T00:00:00Z"}],"reason":"a\"b\\"})";
    };
    static const std::string plain = repeated("AbC0+9zZ", 40);
    static const std::vector<std::string> replies{
        reply(sampleMatch("Ann", "bio", "data:image/jpeg;base64,AA==")),
        reply(sampleMatch("Bob", repeated("caf\xC3\xA9 \xF0\x9F\x98\x80", 40), repeated("data:\\/\\/abc+", 1500)) +
              ',' + sampleMatch("Eve", repeated("a\\u002b\\n\\ud83d\\ude00\\\"\\\\", 20), plain)),
        // Texts around the length from which they are taken out, and such as look like what stands for one.
        reply(sampleMatch(std::string(255, 'x'), std::string(256, 'y'), std::string(257, 'z')) + ',' +
              sampleMatch(padded("0", 256), padded("1", 255), padded("\\u0030", 255)) + ',' +
              sampleMatch("Zed", "", repeated("0123456789abcdef", 750))),
        // Long keys, and long texts under them.
        "\xEF\xBB\xBF{\"" + plain + "\":\"" + repeated(plain, 40) + "\",\"" + repeated("\\u0061", 60) + "\":[\"" +
            repeated(plain, 70) + "\"]," + reply("").substr(1),
    };
    return replies;
}

/// Replies with a few bytes lost, changed, doubled or moved: an endless row, the same for the same seed.
class Mutations
{
public:
    explicit Mutations(unsigned seed) : m_random(seed) {}

    std::string next()
    {
        std::string reply = sampleReplies()[below(sampleReplies().size())];
        for (std::size_t changes = 1 + below(3); changes > 0; --changes)
            change(reply);
        return reply;
    }

private:
    static constexpr std::string_view syntax = "\"\\{}[]:,";

    std::size_t below(std::size_t end) { return static_cast<std::size_t>(m_random() % end); }

    /// A place in `text`: half of them beside a character of the syntax, so that photos do not take most changes.
    std::size_t placeIn(const std::string &text)
    {
        const std::size_t place = below(text.size() + 1);
        if (below(2) == 0)
            return place;
        const std::size_t found = text.find_first_of(syntax, place);
        return found == std::string::npos ? place : found + below(2);
    }

    void change(std::string &text)
    {
        static constexpr std::array<std::string_view, 28> tokens{
            "\"",      "\\",      "{",    "}",    "[",     "]",       ":",
            ",",       "true",    "null", "-1",   "1e400", "0",       "7e1",
            "\x01",    "\n",      "\xff", "\xC3", "\xA9",  "\\u",     "\\/",
            "\\ud83d", "\\u0000", "\\\"", " ",    "\"\"",  "\"a\":1", "9223372036854775808"};
        // Members that come twice: before those that the object has, or after them.
        static constexpr std::array<std::string_view, 12> members{R"("active":false)",
                                                                  R"("active":null)",
                                                                  R"("thresholdPercent":70.5)",
                                                                  R"("thresholdPercent":7e1)",
                                                                  R"("thresholdPercent":9007199254740992.0)",
                                                                  R"("thresholdPercent":null)",
                                                                  R"("reason":null)",
                                                                  R"("matches":[])",
                                                                  R"("profilePhotos":["a"])",
                                                                  R"("profileBio":null)",
                                                                  R"("userId":1)",
                                                                  R"("\u0069d":"b")"};
        const std::size_t place = placeIn(text);
        const std::size_t length = 1 + below(below(4) == 0 ? 300 : 3);
        switch (below(9)) {
        case 0:
            text.erase(place, length);
            break;
        case 1:
            text.insert(place, tokens[below(tokens.size())]);
            break;
        case 2:
            text.replace(place, 1, tokens[below(tokens.size())]);
            break;
        case 3:
            text.insert(placeIn(text), text.substr(place, length));
            break;
        case 4:
            if (place < text.size())
                text[place] = static_cast<char>(below(256));
            break;
        case 5:
            text.insert(place, length, ' ');
            break;
        case 6:
            if (below(8) == 0)
                text.resize(place);
            break;
        case 7:
            if (const std::size_t open = text.find('{', below(2) == 0 ? 0 : place); open != std::string::npos)
                text.insert(open + 1, std::string(members[below(members.size())]) + ',');
            break;
        case 8:
            if (const std::size_t close = below(2) == 0 ? text.rfind('}') : text.find('}', place);
                close != std::string::npos)
                text.insert(close, ',' + std::string(members[below(members.size())]));
            break;
        }
    }

    std::mt19937_64 m_random;
};

} // namespace ambrel
