#pragma once

#include "model/LocalizedError.h"
#include "model/PhotoText.h"
#include "model/Record.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>
#include <optional>

namespace ambrel {

/// The record cannot be written as JSON; the sentence names the key.
class EncodingError : public LocalizedError
{
public:
    using LocalizedError::LocalizedError;
};

/// Writes values one after the other, as compact JSON. Throws EncodingError.
class JsonWriter
{
public:
    void write(bool value) { m_json += value ? "true" : "false"; }
    void write(qint64 value) { m_json += QByteArray::number(value); }
    void write(double value);
    void write(const QString &value);
    void write(const PhotoText &value);

    template <typename Element>
    void write(const QList<Element> &values)
    {
        m_json += '[';
        for (const Element &element : values) {
            write(element);
            m_json += ',';
        }
        closeWith(']');
    }

    template <WireRecord Record>
    void write(const Record &record)
    {
        m_json += '{';
        forEachField<Record>([&](const char *key, auto member) { writeField(key, record.*member); });
        closeWith('}');
    }

    /// All that was written.
    QByteArray json() && { return std::move(m_json); }

private:
    template <typename Value>
    void writeField(const char *key, const Value &value)
    {
        m_key = key;
        m_json.append('"').append(key).append("\":");
        write(value);
        m_json += ',';
    }

    template <typename Value>
    void writeField(const char *key, const std::optional<Value> &value)
    {
        if (value)
            writeField(key, *value);
    }

    void closeWith(char bracket);
    void writeText(QByteArrayView utf8);
    void writeEscape(unsigned char character);

    QByteArray m_json;
    const char *m_key = ""; ///< last written
};

} // namespace ambrel
