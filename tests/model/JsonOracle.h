#pragma once

#include "model/ResponseRecords.h"

#include <QStringDecoder>
#include <cmath>
#include <simdjson.h>

namespace ambrel {

/// A second reader of check replies, written apart from the client's: it parses the bytes as they came, long texts and
/// all, and looks its fields up by name.
class JsonOracle
{
public:
    /// The record in `json`; nothing when that is not a whole reply.
    static std::optional<CheckResponse> read(std::string_view json)
    {
        if (json.substr(0, 3) == "\xEF\xBB\xBF")
            json.remove_prefix(3);
        try {
            simdjson::dom::parser parser;
            return checkIn(parser.parse(simdjson::padded_string(json)));
        } catch (const simdjson::simdjson_error &) {
            return std::nullopt;
        }
    }

private:
    using Element = simdjson::dom::element;

    /// All values of a key; refuses when a required key has none.
    static std::vector<Element> valuesOf(const Element &object, std::string_view key, bool isRequired)
    {
        std::vector<Element> values;
        const simdjson::dom::object members = object.get_object();
        for (const auto &[name, value] : members) {
            if (name == key)
                values.push_back(value);
        }
        if (isRequired && values.empty())
            throw simdjson::simdjson_error(simdjson::NO_SUCH_FIELD);
        return values;
    }

    /// The last value of a required key; the others need the right type, too.
    template <typename Take>
    static auto required(const Element &object, std::string_view key, Take take)
    {
        const auto values = valuesOf(object, key, true);
        for (const Element &value : values)
            (void)take(value);
        return take(values.back());
    }

    template <typename Take>
    static auto optional(const Element &object, std::string_view key, Take take)
    {
        std::optional<decltype(take(object))> result;
        for (const Element &value : valuesOf(object, key, false)) {
            result.reset();
            if (!value.is_null())
                result = take(value);
        }
        return result;
    }

    template <typename Take>
    static auto list(Take take)
    {
        return [take](const Element &value) {
            QList<decltype(take(value))> result;
            const simdjson::dom::array array = value.get_array();
            for (const Element element : array)
                result.append(take(element));
            return result;
        };
    }

    static bool flag(const Element &value) { return value.get_bool().value(); }
    static double number(const Element &value) { return value.get_double().value(); }
    static std::string_view bytes(const Element &value) { return value.get_string().value(); }
    static PhotoText photo(const Element &value) { return PhotoText(bytes(value)); }
    static QString text(const Element &value)
    {
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
        return decoder(QByteArrayView(bytes(value).data(), qsizetype(bytes(value).size())));
    }
    static qint64 integer(const Element &value)
    {
        if (!value.is_double())
            return value.get_int64().value();
        const double number = value.get_double().value();
        if (std::floor(number) != number || std::fabs(number) > 9007199254740991.0)
            throw simdjson::simdjson_error(simdjson::INCORRECT_TYPE);
        return static_cast<qint64>(number);
    }

    static MatchResult match(const Element &value)
    {
        return {.userId = required(value, "userId", text),
                .displayName = required(value, "displayName", text),
                .distanceMeters = required(value, "distanceMeters", number),
                .aToB = required(value, "aToB", number),
                .bToA = required(value, "bToA", number),
                .heatLevel = required(value, "heatLevel", text),
                .profileBio = optional(value, "profileBio", text),
                .profilePhoto = optional(value, "profilePhoto", photo),
                .profilePhotos = required(value, "profilePhotos", list(photo)),
                .updatedAt = optional(value, "updatedAt", text)};
    }

    static SeeMeMessage message(const Element &value)
    {
        return {.id = required(value, "id", text),
                .fromUserId = required(value, "fromUserId", text),
                .toUserId = required(value, "toUserId", text),
                .body = required(value, "body", text),
                .createdAt = optional(value, "createdAt", text)};
    }

    static CheckResponse checkIn(const Element &value)
    {
        return {.active = required(value, "active", flag),
                .thresholdPercent = optional(value, "thresholdPercent", integer),
                .maxDistanceMeters = optional(value, "maxDistanceMeters", number),
                .checkedAt = optional(value, "checkedAt", text),
                .matches = required(value, "matches", list(match)),
                .seeMeMessages = required(value, "seeMeMessages", list(message)),
                .reason = optional(value, "reason", text)};
    }
};

} // namespace ambrel
