#pragma once

#include "model/LocalizedError.h"

namespace ambrel {

/// The server client's own failure; carries the text for the user.
class AmbrelAPIError : public LocalizedError
{
public:
    /// The one case: `text` is shown as it stands.
    static AmbrelAPIError message(QString text) { return AmbrelAPIError(std::move(text)); }

private:
    using LocalizedError::LocalizedError;
};

} // namespace ambrel
