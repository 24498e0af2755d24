#pragma once

#include "model/Json.h"

#include <simdjson.h>

namespace ambrel {

/// Where in a reply its reader stands; a chain on the stack, spelled out only for an error.
struct Place
{
    const Place *parent = nullptr;
    const char *key = nullptr; ///< null for a list element
    qsizetype index = 0;       ///< in the list, or of the field in its record
    int depth = 0;

    Place under(const char *childKey, std::size_t field) const
    {
        return {this, childKey, static_cast<qsizetype>(field), depth + 1};
    }
    Place at(qsizetype childIndex) const { return {this, nullptr, childIndex, depth + 1}; }
    /// Somewhere below that no sentence needs to tell.
    Place deeper() const { return {parent, key, index, depth + 1}; }

    /// As a sentence names it: matches[1].userId
    QString path() const
    {
        const QString before = parent ? parent->path() : QString();
        if (key)
            return (before.isEmpty() ? before : before + u'.') + QString::fromUtf8(key);
        return parent ? before + u'[' + QString::number(index) + u']' : before;
    }
};

/// Refuses the reply for what stands at `place`. Throws DecodingError.
[[noreturn]] inline void fail(const Place &place, const QString &what)
{
    const QString path = place.path();
    throw DecodingError((path.isEmpty() ? QStringLiteral("it") : u'"' + path + u'"') + u' ' + what);
}

/// The value, or a DecodingError: malformed JSON and a wrong type both end here, since the type is what the reader of
/// the sentence can act on.
template <typename Value>
[[gnu::always_inline]] inline Value expect(simdjson::simdjson_result<Value> result, const Place &place,
                                           const char *type)
{
    Value value;
    if (std::move(result).get(value) != simdjson::SUCCESS)
        fail(place, QStringLiteral("is not %1").arg(QLatin1String(type)));
    return value;
}

} // namespace ambrel
