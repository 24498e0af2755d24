#include "model/JsonReader.h"

#include "model/LongTexts.h"

#include <cmath>
#include <simdjson.h>

namespace ambrel {

namespace dom = simdjson::dom;

namespace {

/// The elements of all lists of a reply that are read: an empty text takes ten times its room in memory.
constexpr qsizetype maxElements = 1'000'000;
/// Bytes of JSON beside long texts: the parser takes up to fourteen times as many.
constexpr std::size_t maxSkeleton = std::size_t{64} * 1024 * 1024;
/// Up to this many bytes of JSON are parsed with buffers that stay.
constexpr std::size_t maxSmallSkeleton = std::size_t{64} * 1024;
/// Two to the power of 53: from here on a double may stand for other whole numbers than the one written.
constexpr double maxExactWhole = 9'007'199'254'740'992;
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

} // namespace

/// What the values of one reply share while it is read.
struct JsonReply
{
    const std::shared_ptr<Bytes> &bytes;
    LongTexts longTexts;
    qsizetype elementCount = 0; ///< of all lists so far
};

/// As a sentence names it: matches[1].userId
QString JsonValue::path() const
{
    const QString before = m_parent ? m_parent->path() : QString();
    if (!m_key.empty())
        return (before.isEmpty() ? before : before + u'.') +
               QString::fromUtf8(m_key.data(), static_cast<qsizetype>(m_key.size()));
    return m_parent ? before + u'[' + QString::number(m_index) + u']' : before;
}

void JsonValue::fail(const QString &what) const
{
    const QString place = path();
    throw DecodingError((place.isEmpty() ? QStringLiteral("it") : u'"' + place + u'"') + u' ' + what);
}

void JsonValue::failForMissing(const char *key) const
{
    JsonValue(*this, m_element, key, 0).fail(QStringLiteral("is missing"));
}

template <typename Value>
Value JsonValue::expect(const char *type) const
{
    Value value;
    if (m_element.get<Value>().get(value) != simdjson::SUCCESS)
        fail(QStringLiteral("is not ") + QLatin1String(type));
    return value;
}

bool JsonValue::isNull() const
{
    return m_element.is_null();
}

void JsonValue::read(bool &out) const
{
    out = expect<bool>("true or false");
}

void JsonValue::read(double &out) const
{
    out = expect<double>("a number");
}

void JsonValue::read(qint64 &out) const
{
    if (std::int64_t whole = 0; m_element.get(whole) == simdjson::SUCCESS) {
        out = whole;
        return;
    }
    const auto value = expect<double>("a whole number");
    if (std::abs(value) >= maxExactWhole || value != std::trunc(value))
        fail(QStringLiteral("is not a whole number"));
    out = static_cast<qint64>(value);
}

void JsonValue::read(QString &out) const
{
    const auto text = expect<std::string_view>("a text");
    const std::string_view whole = m_reply.longTexts.at(text).value_or(text);
    out = QString::fromUtf8(whole.data(), static_cast<qsizetype>(whole.size()));
    if (whole.starts_with(byteOrderMark)) // which the toolkit leaves out, but an ID may begin with it
        out.prepend(QChar(QChar::ByteOrderMark));
}

void JsonValue::read(PhotoText &out) const
{
    const auto text = expect<std::string_view>("a text");
    const auto longText = m_reply.longTexts.at(text);
    out = longText ? PhotoText(m_reply.bytes, *longText) : PhotoText(text);
}

qsizetype JsonValue::size() const
{
    const auto size = static_cast<qsizetype>(expect<dom::array>("a list").size());
    m_reply.elementCount += size;
    if (m_reply.elementCount > maxElements)
        fail(QStringLiteral("has too many elements"));
    return size;
}

void JsonValue::forEachElement(const Visitor &visit) const
{
    qsizetype index = 0;
    for (const dom::element element : expect<dom::array>("a list"))
        visit(JsonValue(*this, element, {}, index++));
}

void JsonValue::forEachMember(const Visitor &visit) const
{
    for (const dom::key_value_pair member : expect<dom::object>("an object"))
        visit(JsonValue(*this, member.value, member.key, 0));
}

void readJson(const std::shared_ptr<Bytes> &json, const std::function<void(const JsonValue &)> &read)
{
    static_assert(Bytes::padding >= simdjson::SIMDJSON_PADDING);
    if (!json)
        throw DecodingError();
    JsonReply reply{.bytes = json, .longTexts = LongTexts(*json)};
    std::string_view text = reply.longTexts.skeleton();
    if (text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());

    // Most replies are small: their parser keeps its buffers, that of a large one gives them back.
    static thread_local dom::parser smallParser;
    dom::parser largeParser(maxSkeleton);
    dom::parser &parser = text.size() <= maxSmallSkeleton ? smallParser : largeParser;
    dom::element root;
    if (parser.parse(text.data(), text.size(), false).get(root) != simdjson::SUCCESS)
        throw DecodingError();
    read(JsonValue(reply, root));
}

} // namespace ambrel
