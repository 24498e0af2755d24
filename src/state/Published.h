#pragma once

#include <QObject>
#include <utility>

namespace ambrel {

/// One observable field: every assignment first announces `objectWillChange` on its owner, even when the value
/// stays equal. Main thread only.
template <typename Owner, typename Value>
class Published
{
public:
    Published(Owner *owner, Value initial) : m_owner(owner), m_value(std::move(initial)) {}
    Published(const Published &) = delete;
    Published &operator=(const Published &) = delete;

    Published &operator=(Value value)
    {
        Q_EMIT m_owner->objectWillChange();
        m_value = std::move(value);
        return *this;
    }
    const Value &value() const { return m_value; }
    operator const Value &() const { return m_value; } // NOLINT: reads like the plain field it stands for
    const Value *operator->() const { return &m_value; }

    /// Announces the change and hands the old value out, so that the caller decides where it is destroyed.
    Value exchange(Value value)
    {
        Q_EMIT m_owner->objectWillChange();
        return std::exchange(m_value, std::move(value));
    }

private:
    Owner *m_owner;
    Value m_value;
};

} // namespace ambrel
