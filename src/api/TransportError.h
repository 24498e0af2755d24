#pragma once

#include "model/LocalizedError.h"

namespace ambrel {

/// The exchange with the server did not happen or did not end; the sentence says why.
class TransportError : public LocalizedError
{
public:
    using LocalizedError::LocalizedError;
};

} // namespace ambrel
