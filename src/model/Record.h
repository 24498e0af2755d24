#pragma once

#include <optional>
#include <tuple>

namespace ambrel {

/// One field of a wire record: its JSON key and the member that holds it.
template <typename Record, typename Value>
struct Field
{
    const char *key;
    Value Record::*member;
};

/// The fields of a record in the order in which they are written.
template <typename... Fields>
constexpr auto fieldList(Fields... fields)
{
    return std::tuple<Fields...>(fields...);
}

/// Names one field; deduces the record and the value from the member.
template <typename Record, typename Value>
constexpr Field<Record, Value> field(const char *key, Value Record::*member)
{
    return {key, member};
}

/// A plain struct that declares `static constexpr auto fields()`. A `std::optional` member may be absent in JSON;
/// every other member must be present.
template <typename T>
concept WireRecord = requires
{
    T::fields();
};

template <typename Member>
inline constexpr bool isOptional = false;
template <typename Value>
inline constexpr bool isOptional<std::optional<Value>> = true;

/// Calls `visit(key, member)` for every field of the record type, in order.
template <WireRecord Record, typename Visitor>
constexpr void forEachField(Visitor &&visit)
{
    std::apply([&visit](auto... fields) { (visit(fields.key, fields.member), ...); }, Record::fields());
}

} // namespace ambrel
