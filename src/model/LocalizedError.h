#pragma once

#include <QString>
#include <exception>

namespace ambrel {

/// A failure with a short sentence that can be shown to the user.
class LocalizedError : public std::exception
{
public:
    explicit LocalizedError(QString description) : m_description(std::move(description)) {}
    /// The sentence for the user.
    const QString &errorDescription() const { return m_description; }
    const char *what() const noexcept override { return "ambrel::LocalizedError"; }

private:
    QString m_description;
};

} // namespace ambrel
