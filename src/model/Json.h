#pragma once

#include "model/JsonReader.h"
#include "model/JsonWriter.h"

#include <QByteArray>

namespace ambrel {

/// Reads one record, strictly: required fields must be there with the right type, unknown keys are ignored, and of a
/// key that comes twice the last value counts. Long photos stay slices of `json`, unescaped where they stand: the
/// bytes are used up by reading. Throws DecodingError. Any thread.
template <WireRecord Record>
Record readRecord(const std::shared_ptr<Bytes> &json)
{
    Record record;
    readJson(json, [&record](const JsonValue &root) { root.read(record); });
    return record;
}

/// Writes one record with its fields in order; absent optionals are left out. Throws EncodingError. Any thread.
template <WireRecord Record>
QByteArray writeRecord(const Record &record)
{
    JsonWriter writer;
    writer.write(record);
    return std::move(writer).json();
}

} // namespace ambrel
