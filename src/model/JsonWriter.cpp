#include "model/Json.h"
#include "model/RepairedUtf8.h"
#include "model/RequestRecords.h"
#include "model/ResponseRecords.h"

#include <array>
#include <charconv>
#include <cmath>

namespace ambrel {

namespace {

class Writer
{
public:
    void write(bool value, const char *) { m_json += value ? "true" : "false"; }
    void write(qint64 value, const char *) { m_json += QByteArray::number(value); }

    void write(double value, const char *key)
    {
        if (!std::isfinite(value))
            throw EncodingError(QStringLiteral("\"%1\" is not a finite number.").arg(QLatin1String(key)));
        std::array<char, 32> digits; // the shortest form that reads back as the same value
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
        m_json.append(digits.data(), end - digits.data());
    }

    void write(const QString &value, const char *) { writeText(repairedUtf8(value)); }
    void write(const PhotoText &value, const char *)
    {
        writeText({value.view().data(), static_cast<qsizetype>(value.view().size())});
    }

    template <typename Element>
    void write(const QList<Element> &values, const char *key)
    {
        m_json += '[';
        for (const Element &element : values) {
            write(element, key);
            m_json += ',';
        }
        closeWith(']');
    }

    template <WireRecord Record>
    void write(const Record &record, const char *)
    {
        m_json += '{';
        forEachField<Record>([&](const char *key, auto member) { writeField(key, record.*member); });
        closeWith('}');
    }

    QByteArray json() && { return std::move(m_json); }

private:
    template <typename Value>
    void writeField(const char *key, const Value &value)
    {
        m_json.append('"').append(key).append("\":");
        write(value, key);
        m_json += ',';
    }

    template <typename Value>
    void writeField(const char *key, const std::optional<Value> &value)
    {
        if (value)
            writeField(key, *value);
    }

    void closeWith(char bracket)
    {
        if (m_json.endsWith(','))
            m_json.chop(1);
        m_json += bracket;
    }

    void writeText(QByteArrayView text)
    {
        m_json += '"';
        qsizetype written = 0;
        for (qsizetype i = 0; i < text.size(); ++i) {
            const auto letter = static_cast<unsigned char>(text[i]);
            if (letter >= 0x20 && letter != '"' && letter != '\\')
                continue;
            m_json += text.sliced(written, i - written);
            writeEscape(letter);
            written = i + 1;
        }
        m_json += text.sliced(written);
        m_json += '"';
    }

    void writeEscape(unsigned char letter)
    {
        static constexpr char hexadecimal[] = "0123456789abcdef";
        if (letter == '"' || letter == '\\')
            m_json.append('\\').append(static_cast<char>(letter));
        else
            m_json.append("\\u00").append(hexadecimal[letter >> 4]).append(hexadecimal[letter & 15]);
    }

    QByteArray m_json;
};

} // namespace

template <WireRecord Record>
QByteArray writeRecord(const Record &record)
{
    Writer writer;
    writer.write(record, "");
    return std::move(writer).json();
}

template QByteArray writeRecord(const RegisterRequest &);
template QByteArray writeRecord(const LocationUpdateRequest &);
template QByteArray writeRecord(const LoginRequest &);
template QByteArray writeRecord(const LogoutRequest &);
template QByteArray writeRecord(const DismissRequest &);
template QByteArray writeRecord(const SeeMeRequest &);
template QByteArray writeRecord(const UserResponse &);
template QByteArray writeRecord(const UserProfileResponse &);
template QByteArray writeRecord(const CheckResponse &);
template QByteArray writeRecord(const SeeMeResponse &);
template QByteArray writeRecord(const SeeMeMessagesResponse &);
template QByteArray writeRecord(const DismissResponse &);
template QByteArray writeRecord(const HealthResponse &);
template QByteArray writeRecord(const AppVersionResponse &);
template QByteArray writeRecord(const APIErrorResponse &);

} // namespace ambrel
