#pragma once

#include "model/Bytes.h"
#include "model/LocalizedError.h"
#include "model/PhotoText.h"
#include "model/Record.h"

#include <QList>
#include <QString>
#include <bitset>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace simdjson::dom {
class element;
}

namespace ambrel {

/// The bytes are not the expected record.
class DecodingError : public LocalizedError
{
public:
    /// The bytes are no JSON.
    DecodingError() : LocalizedError(QStringLiteral("The server's answer could not be read.")) {}
    /// `problem` names the key and what is wrong with it.
    explicit DecodingError(const QString &problem)
        : LocalizedError(QStringLiteral("The server's answer could not be read: %1.").arg(problem)), m_problem(problem)
    {
    }
    /// Empty when the bytes are no JSON.
    const QString &problem() const { return m_problem; }

private:
    QString m_problem;
};

struct JsonReply;

/// One value of a reply, and where it stands in it; valid while the reply is read. Whatever does not fit throws a
/// DecodingError that names the place.
class JsonValue
{
public:
    JsonValue(JsonReply &reply, const simdjson::dom::element &element) : m_reply(reply), m_element(element) {}

    void read(bool &out) const;
    void read(double &out) const;
    /// Reads a number without a fraction, which may be written as 70.0 or 7e1.
    void read(qint64 &out) const;
    void read(QString &out) const;
    void read(PhotoText &out) const;

    template <typename Element>
    void read(QList<Element> &out) const
    {
        out.clear();
        out.reserve(size());
        forEachElement([&out](const JsonValue &element) { element.read(out.emplaceBack()); });
    }

    template <typename Value>
    void read(std::optional<Value> &out) const
    {
        if (isNull())
            out.reset();
        else
            read(out.emplace());
    }

    template <WireRecord Record>
    void read(Record &out) const
    {
        out = Record(); // its key may have come before
        std::bitset<std::tuple_size_v<decltype(Record::fields())>> seen;
        forEachMember([&out, &seen](const JsonValue &member) {
            std::size_t index = 0;
            forEachField<Record>([&](std::string_view key, auto field) {
                if (member.m_key == key) {
                    member.read(out.*field);
                    seen.set(index);
                }
                ++index;
            });
        });
        std::size_t index = 0;
        forEachField<Record>([&]<typename Value>(const char *key, Value Record::*) {
            if (!isOptional<Value> && !seen.test(index))
                failForMissing(key);
            ++index;
        });
    }

private:
    JsonValue(const JsonValue &parent, const simdjson::dom::element &element, std::string_view key, qsizetype index)
        : m_reply(parent.m_reply), m_element(element), m_parent(&parent), m_key(key), m_index(index)
    {
    }
    using Visitor = std::function<void(const JsonValue &)>;
    bool isNull() const;
    /// The number of elements of a list, which count towards those that one reply may have.
    qsizetype size() const;
    void forEachElement(const Visitor &visit) const;
    /// Visits the members of an object in the order of the reply, those with the same key, too.
    void forEachMember(const Visitor &visit) const;

    template <typename Value>
    Value expect(const char *type) const;
    [[noreturn]] void failForMissing(const char *key) const;
    [[noreturn]] void fail(const QString &what) const;
    QString path() const;

    JsonReply &m_reply;
    const simdjson::dom::element &m_element;
    const JsonValue *m_parent = nullptr;
    std::string_view m_key; ///< empty in a list
    qsizetype m_index = 0;  ///< in the list
};

/// Parses the whole of `json`, which is used up, and hands its outermost value to `read`. Throws DecodingError. Any
/// thread.
void readJson(const std::shared_ptr<Bytes> &json, const std::function<void(const JsonValue &)> &read);

} // namespace ambrel
