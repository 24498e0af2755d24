#include "model/Json.h"
#include "model/JsonGrammar.h"
#include "model/JsonKey.h"
#include "model/JsonLetters.h"
#include "model/JsonSkip.h"
#include "model/LongTexts.h"
#include "model/RequestRecords.h"
#include "model/ResponseRecords.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <cstdint>
#include <optional>

namespace ambrel {

namespace {

namespace ondemand = simdjson::ondemand;

/// The elements of all lists of a reply. More are no people: an empty text takes ten times its room in memory.
constexpr int mostElements = 1'000'000;
/// Up to this many bytes of JSON are parsed with buffers that stay.
constexpr std::size_t smallText = std::size_t{64} * 1024;

template <typename T>
struct IsOptional : std::false_type
{
};
template <typename T>
struct IsOptional<std::optional<T>> : std::true_type
{
};

template <WireRecord Record>
constexpr auto keysOf = std::apply([](auto... fields) { return std::array{JsonKey(fields.key)...}; }, Record::fields());

class Reader
{
public:
    Reader(const std::shared_ptr<Bytes> &json, const LongTexts &longTexts) : m_json(json), m_longTexts(longTexts) {}

    void read(ondemand::value &value, bool &out, const Place &place)
    {
        out = expect(value.get_bool(), place, "true or false");
    }

    void read(ondemand::value &value, double &out, const Place &place)
    {
        out = expect(value.get_double(), place, "a number");
    }

    void read(ondemand::value &value, qint64 &out, const Place &place)
    {
        int64_t whole = 0;
        if (value.get_int64().get(whole) == simdjson::SUCCESS) {
            out = whole;
            return;
        }
        const auto exact = wholeNumber(tokenOf(value)); // 70.0 and 7e1 are whole numbers, too
        if (!exact)
            fail(place, QStringLiteral("is not a whole number"));
        out = *exact;
    }

    void read(ondemand::value &value, QString &out, const Place &place)
    {
        const Text text = readText(value, place);
        Recent &recent = m_recent[static_cast<std::size_t>(place.index) % m_recent.size()];
        if (text.view != recent.utf8) {
            recent = {text.view, QString()};
            out = toString(text);
            return;
        }
        if (recent.text.isNull())
            recent.text = toString(text);
        out = recent.text;
    }

    void read(ondemand::value &value, PhotoText &out, const Place &place)
    {
        const Text text = readText(value, place);
        out = text.isLong ? PhotoText(m_json, text.view) : PhotoText(text.view);
    }

    template <typename Element>
    void read(ondemand::value &value, QList<Element> &out, const Place &place)
    {
        out.clear();
        for (auto result : expect(value.get_array(), place, "a list")) {
            const Place elementPlace = place.at(out.size());
            if (++m_elements > mostElements)
                fail(place, QStringLiteral("has too many elements"));
            ondemand::value element = expect(result, elementPlace, "valid JSON");
            read(element, out.emplaceBack(), elementPlace);
        }
    }

    template <typename Value>
    void read(ondemand::value &value, std::optional<Value> &out, const Place &place)
    {
        if (expect(value.type(), place, "valid JSON") == ondemand::json_type::null) {
            skip(value, place);
            out.reset();
        } else {
            read(value, out.emplace(), place);
        }
    }

    template <WireRecord Record>
    void read(ondemand::value &value, Record &out, const Place &place)
    {
        read(expect(value.get_object(), place, "an object"), out, place);
    }

    template <WireRecord Record>
    void read(ondemand::object object, Record &out, const Place &place)
    {
        constexpr std::size_t count = std::tuple_size_v<decltype(Record::fields())>;
        static constexpr auto readers = fieldReaders<Record>(std::make_index_sequence<count>());
        std::bitset<count> seen;
        std::size_t expected = 0;
        for (auto result : object) {
            ondemand::field field = expect(std::move(result), place, "valid JSON");
            const std::size_t index = fieldIndex<Record>(field, expected, place);
            if (index == count) {
                skip(field.value(), place.deeper());
                continue;
            }
            readers[index](*this, field.value(), out, place);
            seen.set(index);
            expected = index + 1;
        }
        requireAll<Record>(seen, place);
    }

private:
    struct Text
    {
        std::string_view view;
        bool isLong;  ///< stands in the reply itself
        bool isAscii; ///< known to be
    };

    static QString toString(const Text &text)
    {
        const auto size = static_cast<qsizetype>(text.view.size());
        return text.isAscii ? QString::fromLatin1(text.view.data(), size) : QString::fromUtf8(text.view.data(), size);
    }

    Text readText(ondemand::value &value, const Place &place)
    {
        std::string_view token = value.raw_json_token();
        if (token.front() != '"')
            fail(place, QStringLiteral("is not a text"));
        if (const auto inside = m_longTexts.at(token.data()))
            return {.view = *inside, .isLong = true, .isAscii = true};
        token = insideOf(token);
        const JsonLetters letters(token);
        if (letters.hasBackslash)
            return {.view = expect(value.get_string(), place, "a text"), .isLong = false, .isAscii = false};
        return {.view = token, .isLong = false, .isAscii = letters.isAscii};
    }

    /// The record's field with this key, or the number of its fields. Escapes in keys are looked through.
    template <WireRecord Record>
    static std::size_t fieldIndex(ondemand::field &field, std::size_t expected, const Place &place)
    {
        const char *const begin = field.key().raw();
        // Servers write keys in order: those to come are compared before the end of this one is looked for.
        constexpr auto &keys = keysOf<Record>;
        for (std::size_t i = expected; i < keys.size(); ++i) {
            if (keys[i].standsAt(begin))
                return i;
        }
        const std::string_view inside = insideOf(field);
        if (inside.find('\\') == std::string_view::npos)
            return fieldIndex<Record>(inside);
        std::string_view key;
        if (field.unescaped_key().get(key) == simdjson::SUCCESS)
            return fieldIndex<Record>(key);
        expectString(inside, place);
        return keys.size(); // half a surrogate pair: no key of ours
    }

    template <WireRecord Record>
    static std::size_t fieldIndex(std::string_view key)
    {
        constexpr auto &keys = keysOf<Record>;
        const auto found =
            std::find_if(keys.begin(), keys.end(), [key](const JsonKey &own) { return own.text() == key; });
        return static_cast<std::size_t>(found - keys.begin());
    }

    template <WireRecord Record>
    using FieldReader = void (*)(Reader &reader, ondemand::value &value, Record &out, const Place &place);

    /// One function for each field of the record.
    template <WireRecord Record, std::size_t... indexes>
    static constexpr auto fieldReaders(std::index_sequence<indexes...>)
    {
        return std::array<FieldReader<Record>, sizeof...(indexes)>{
            [](Reader &reader, ondemand::value &value, Record &out, const Place &place) {
                constexpr auto field = std::get<indexes>(Record::fields());
                using Value = std::remove_reference_t<decltype(out.*(field.member))>;
                if constexpr (WireRecord<Value>)
                    out.*(field.member) = Value(); // its key may have come before
                reader.read(value, out.*(field.member), place.under(field.key, indexes));
            }...};
    }

    template <WireRecord Record, std::size_t count>
    static void requireAll(const std::bitset<count> &seen, const Place &place)
    {
        std::size_t index = 0;
        forEachField<Record>([&]<typename Value>(const char *key, Value Record::*) {
            if (!IsOptional<Value>::value && !seen.test(index))
                fail(place.under(key, index), QStringLiteral("is missing"));
            ++index;
        });
    }

    /// The text last read in one field; once it comes again, the string that those who have it share.
    struct Recent
    {
        std::string_view utf8;
        QString text;
    };

    const std::shared_ptr<Bytes> &m_json;
    const LongTexts &m_longTexts;
    int m_elements = 0;              ///< of all lists so far
    std::array<Recent, 16> m_recent; ///< heat levels and time stamps are alike in most matches, and then shared
};

} // namespace

DecodingError::DecodingError(const QString &problem)
    : LocalizedError(problem.isEmpty() ? QStringLiteral("The server's answer could not be read.")
                                       : QStringLiteral("The server's answer could not be read: %1.").arg(problem)),
      m_problem(problem)
{
}

template <WireRecord Record>
Record readRecord(const std::shared_ptr<Bytes> &json)
{
    static_assert(Bytes::padding >= simdjson::SIMDJSON_PADDING);
    if (!json || json->size() == 0)
        throw DecodingError(QString());
    const LongTexts longTexts(*json);
    std::string_view text = longTexts.skeleton();
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);

    // Most replies are small: their parser keeps its buffers, that of a large one gives them back.
    static thread_local ondemand::parser smallParser;
    ondemand::parser largeParser;
    ondemand::parser &parser = text.size() <= smallText ? smallParser : largeParser;
    ondemand::document document;
    ondemand::object object;
    if (parser.iterate(text.data(), text.size(), text.size() + Bytes::padding).get(document) != simdjson::SUCCESS ||
        document.get_object().get(object) != simdjson::SUCCESS)
        throw DecodingError(QString());

    Record record;
    Reader(json, longTexts).read(object, record, Place());
    if (document.current_location().error() != simdjson::OUT_OF_BOUNDS) // something follows the record
        throw DecodingError(QString());
    return record;
}

template RegisterRequest readRecord(const std::shared_ptr<Bytes> &);
template LocationUpdateRequest readRecord(const std::shared_ptr<Bytes> &);
template LoginRequest readRecord(const std::shared_ptr<Bytes> &);
template LogoutRequest readRecord(const std::shared_ptr<Bytes> &);
template DismissRequest readRecord(const std::shared_ptr<Bytes> &);
template SeeMeRequest readRecord(const std::shared_ptr<Bytes> &);
template UserResponse readRecord(const std::shared_ptr<Bytes> &);
template UserProfileResponse readRecord(const std::shared_ptr<Bytes> &);
template MatchResult readRecord(const std::shared_ptr<Bytes> &);
template CheckResponse readRecord(const std::shared_ptr<Bytes> &);
template SeeMeResponse readRecord(const std::shared_ptr<Bytes> &);
template SeeMeMessagesResponse readRecord(const std::shared_ptr<Bytes> &);
template DismissResponse readRecord(const std::shared_ptr<Bytes> &);
template HealthResponse readRecord(const std::shared_ptr<Bytes> &);
template AppVersionResponse readRecord(const std::shared_ptr<Bytes> &);
template APIErrorResponse readRecord(const std::shared_ptr<Bytes> &);

} // namespace ambrel
