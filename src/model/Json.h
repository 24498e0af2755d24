#pragma once

#include "model/Bytes.h"
#include "model/LocalizedError.h"
#include "model/Record.h"

#include <QByteArray>
#include <memory>

namespace ambrel {

/// The bytes are not the expected record; the sentence names the key where one is known.
class DecodingError : public LocalizedError
{
public:
    using LocalizedError::LocalizedError;
};

/// The record cannot be written as JSON; the sentence names the key.
class EncodingError : public LocalizedError
{
public:
    using LocalizedError::LocalizedError;
};

/// Reads one record, strictly: required fields must be there with the right type, unknown keys are ignored.
/// Photos stay slices of `json`. Throws DecodingError. Any thread.
template <WireRecord Record>
Record readRecord(const std::shared_ptr<const Bytes> &json);

/// Writes one record with its fields in order; absent optionals are left out. Throws EncodingError. Any thread.
template <WireRecord Record>
QByteArray writeRecord(const Record &record);

} // namespace ambrel
