#include "model/JsonSkip.h"

#include "model/JsonGrammar.h"

namespace ambrel {

namespace ondemand = simdjson::ondemand;

void expectString(std::string_view inside, const Place &place)
{
    if (!isJsonString(inside))
        fail(place, QStringLiteral("is not valid JSON"));
}

void skip(ondemand::value value, const Place &place)
{
    if (place.depth > maximumJsonDepth)
        fail(place, QStringLiteral("is nested too deeply"));
    switch (expect(value.type(), place, "valid JSON")) {
    case ondemand::json_type::object:
        for (auto result : expect(value.get_object(), place, "valid JSON")) {
            ondemand::field field = expect(std::move(result), place, "valid JSON");
            expectString(insideOf(field), place);
            skip(field.value(), place.deeper());
        }
        break;
    case ondemand::json_type::array:
        for (auto element : expect(value.get_array(), place, "valid JSON"))
            skip(expect(element, place, "valid JSON"), place.deeper());
        break;
    case ondemand::json_type::number:
        if (!isJsonNumber(tokenOf(value)))
            fail(place, QStringLiteral("is not valid JSON"));
        break;
    case ondemand::json_type::string:
        expectString(insideOf(tokenOf(value)), place);
        break;
    case ondemand::json_type::boolean:
        expect(value.get_bool(), place, "valid JSON");
        break;
    case ondemand::json_type::null:
        if (!expect(value.is_null(), place, "valid JSON"))
            fail(place, QStringLiteral("is not valid JSON"));
        break;
    }
}

} // namespace ambrel
