#pragma once

#include "model/Json.h"

#include <QByteArray>
#include <QString>

namespace ambrel {

/// Reads a record from JSON text.
template <WireRecord Record>
Record decode(const QByteArray &json)
{
    return readRecord<Record>(std::make_shared<Bytes>(std::string_view(json.data(), static_cast<size_t>(json.size()))));
}

/// The sentence with which reading fails; empty when it succeeds.
template <WireRecord Record>
QString decodingFailure(const QByteArray &json)
{
    try {
        (void)decode<Record>(json);
    } catch (const DecodingError &error) {
        return error.errorDescription();
    }
    return {};
}

} // namespace ambrel
