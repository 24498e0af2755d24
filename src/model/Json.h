#pragma once

#include "model/Bytes.h"
#include "model/LocalizedError.h"
#include "model/Record.h"

#include <QByteArray>
#include <memory>

namespace ambrel {

/// The bytes are not the expected record.
class DecodingError : public LocalizedError
{
public:
    /// `problem` names the key where one is known; empty when the bytes are no JSON at all.
    explicit DecodingError(const QString &problem);
    const QString &problem() const { return m_problem; }

private:
    QString m_problem;
};

/// The record cannot be written as JSON; the sentence names the key.
class EncodingError : public LocalizedError
{
public:
    using LocalizedError::LocalizedError;
};

/// Reads one record, strictly: required fields must be there with the right type, unknown keys are ignored.
/// Photos stay slices of `json`, unescaped where they stand: the bytes are used up by reading. Throws DecodingError.
/// Any thread.
template <WireRecord Record>
Record readRecord(const std::shared_ptr<Bytes> &json);

/// Writes one record with its fields in order; absent optionals are left out. Throws EncodingError. Any thread.
template <WireRecord Record>
QByteArray writeRecord(const Record &record);

} // namespace ambrel
