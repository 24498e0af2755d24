#pragma once

#include "model/LocalizedError.h"

namespace ambrel::local {

/// A refusal: the HTTP status and the sentence for the user.
class ServiceError : public LocalizedError
{
public:
    ServiceError(int status, QString text) : LocalizedError(std::move(text)), m_status(status) {}
    int status() const { return m_status; }

private:
    int m_status;
};

} // namespace ambrel::local
