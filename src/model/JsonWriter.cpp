#include "model/JsonWriter.h"

#include "model/RepairedUtf8.h"

#include <array>
#include <charconv>
#include <cmath>

namespace ambrel {

void JsonWriter::write(double value)
{
    if (!std::isfinite(value))
        throw EncodingError(QStringLiteral("\"%1\" is not a finite number.").arg(QLatin1String(m_key)));
    std::array<char, 32> digits; // the shortest form that reads back as the same value
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    m_json.append(digits.data(), end - digits.data());
}

void JsonWriter::write(const QString &value)
{
    writeText(repairedUtf8(value));
}

void JsonWriter::write(const PhotoText &value)
{
    writeText({value.view().data(), static_cast<qsizetype>(value.view().size())});
}

void JsonWriter::closeWith(char bracket)
{
    if (m_json.endsWith(','))
        m_json.chop(1);
    m_json += bracket;
}

void JsonWriter::writeText(QByteArrayView utf8)
{
    m_json += '"';
    qsizetype written = 0;
    for (qsizetype i = 0; i < utf8.size(); ++i) {
        const auto character = static_cast<unsigned char>(utf8[i]);
        if (character >= 0x20 && character != '"' && character != '\\')
            continue;
        m_json += utf8.sliced(written, i - written);
        writeEscape(character);
        written = i + 1;
    }
    m_json += utf8.sliced(written);
    m_json += '"';
}

void JsonWriter::writeEscape(unsigned char character)
{
    static constexpr char hexadecimal[] = "0123456789abcdef";
    if (character == '"' || character == '\\')
        m_json.append('\\').append(static_cast<char>(character));
    else
        m_json.append("\\u00").append(hexadecimal[character >> 4]).append(hexadecimal[character & 15]);
}

} // namespace ambrel
